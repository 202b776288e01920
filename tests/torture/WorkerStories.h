// What the run log tells of the workers of a run, one after another.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "tests/support/Lines.h"

namespace larkspan::torture {

struct WorkerStory {
  std::uint32_t startedAt = 0;
  std::uint32_t exitCode = 0;
  bool wasThrown = false;                 // An exception ended it.
  bool hasClosed = false;                 // It came to its closing.
  std::optional<std::uint32_t> marker{};  // The note at which it was.

  // It ended before its own end.
  bool wasCutOff() const { return exitCode != 0 || !hasClosed; }
  bool died() const { return wasCutOff() || wasThrown; }
};

// Reads the DEBUG lines. What does not fit together is a finding: a worker begins where the last
// one was, with one line that names that note, and none begins after one that left no marker.
std::vector<WorkerStory> ReadStories(const Lines& log, Lines& findings);

}  // namespace larkspan::torture
