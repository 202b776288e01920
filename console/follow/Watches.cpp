#include "console/follow/Watches.h"

namespace larkspan::console {

GiveUpWatch::GiveUpWatch(const std::vector<std::uint32_t>& notes) {
  for (std::size_t place = 0; place < notes.size(); ++place) places_.emplace(notes[place], place);
}

std::uint32_t GiveUpWatch::Lose(std::uint32_t note, const std::string& cause) {
  const auto found = places_.find(note);
  // A worker that cannot start says so of the same note again.
  if (found == places_.end() || !causes_.emplace(found->second, cause).second) return count_;
  const auto isLost = [&](std::size_t place) {
    const auto lost = causes_.find(place);
    return lost != causes_.end() && lost->second == cause;
  };
  std::size_t first = found->second;
  while (first > 0 && isLost(first - 1)) --first;
  std::size_t behind = found->second + 1;
  while (isLost(behind)) ++behind;
  count_ = static_cast<std::uint32_t>(behind - first);
  return count_;
}

SpaceWatch::Verdict SpaceWatch::Look(std::uint64_t freeBytes,
                                     std::optional<std::uint64_t> databaseSize) {
  if (freeBytes < kLeast) return Verdict::kTooLittle;
  if (!databaseSize || compared_) return Verdict::kEnough;
  compared_ = true;
  return freeBytes < *databaseSize ? Verdict::kLessThanDatabase : Verdict::kEnough;
}

}  // namespace larkspan::console
