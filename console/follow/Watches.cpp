#include "console/follow/Watches.h"

namespace larkspan::console {

GiveUpWatch::GiveUpWatch(const std::vector<std::uint32_t>& notes) {
  for (std::size_t place = 0; place < notes.size(); ++place) places_.emplace(notes[place], place);
}

std::uint32_t GiveUpWatch::Lose(std::uint32_t note, const std::string& cause) {
  const auto found = places_.find(note);
  if (found == places_.end()) return count_;
  const std::size_t place = found->second;
  // A worker that cannot start says so of the same note again.
  if (last_ == place) return count_;
  const bool inARow = last_ && *last_ + 1 == place && cause == cause_;
  count_ = inARow ? count_ + 1 : 1;
  last_ = place;
  cause_ = cause;
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
