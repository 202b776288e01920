// Which database of a batch is exported next.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "console/batch/BatchEntry.h"

namespace larkspan::console {

struct ScheduleLimits {
  std::size_t jobs = 1;                  // Exports at once.
  std::optional<std::size_t> perServer;  // Of databases of one server, whatever its letter case.
};

// The first entry that waits and may begin now; none while all places are taken.
std::optional<std::size_t> NextToBegin(const std::vector<BatchEntry>& entries,
                                       const ScheduleLimits& limits);

}  // namespace larkspan::console
