#include "console/batch/Schedule.h"

#include <algorithm>

#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

bool IsSameServer(const BatchEntry& one, const BatchEntry& other) {
  return IsSameName(Utf8ToWide(one.database.server), Utf8ToWide(other.database.server));
}

bool HasPlace(const BatchEntry& entry, const std::vector<const BatchEntry*>& running,
              const ScheduleLimits& limits) {
  if (!limits.perServer) return true;
  const auto same = std::count_if(running.begin(), running.end(), [&](const BatchEntry* other) {
    return IsSameServer(entry, *other);
  });
  return static_cast<std::size_t>(same) < *limits.perServer;
}

}  // namespace

std::optional<std::size_t> NextToBegin(const std::vector<BatchEntry>& entries,
                                       const ScheduleLimits& limits) {
  std::vector<const BatchEntry*> running;
  for (const BatchEntry& entry : entries)
    if (entry.state == BatchState::kRunning) running.push_back(&entry);
  if (running.size() >= limits.jobs) return std::nullopt;
  for (std::size_t index = 0; index < entries.size(); ++index) {
    const BatchEntry& entry = entries[index];
    if (entry.state == BatchState::kWaiting && HasPlace(entry, running, limits)) return index;
  }
  return std::nullopt;
}

}  // namespace larkspan::console
