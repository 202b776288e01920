// One database of a batch, and what came of it so far. Plain values.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/ExitCode.h"
#include "console/account/Account.h"
#include "console/batch/BatchList.h"

namespace larkspan::console {

enum class BatchState {
  kWaiting,
  kRunning,
  kDone,      // By this run of the batch, with whatever code.
  kFinished,  // By an earlier one.
  kLeftOut,   // A folder, by what the list says.
};

struct BatchEntry {
  ListedDatabase database;
  std::wstring folder;  // That it is to have in the end.

  BatchState state = BatchState::kWaiting;
  bool wasResumed = false;
  std::optional<ExitCode> code;  // With kDone and kFinished.
  std::string reason;            // One sentence for a code other than 0.
  std::wstring out;              // Where it lies: in the folder, or an attempt; empty: nowhere.
  std::string started;           // UTC; of the export, when it was begun first, ...
  std::string since;             // ... and when it was last gone on with.
  std::string ended;
  std::optional<NoteCounts> counts;  // None when there was nothing to judge.
  std::uint64_t losses = 0;
  std::uint64_t findings = 0;
  std::uint64_t warnings = 0;
};

// How many entries are at what.
struct BatchCounts {
  std::uint64_t all = 0;
  std::uint64_t running = 0;
  std::uint64_t whole = 0;
  std::uint64_t withLosses = 0;
  std::uint64_t failed = 0;      // Code 1 or 2.
  std::uint64_t incomplete = 0;  // Code 5.
  std::uint64_t stopped = 0;
  std::uint64_t leftOut = 0;
  std::uint64_t notBegun = 0;
  std::uint64_t before = 0;  // Of whole and with losses: finished by an earlier run.

  // For good or for now: nothing is at work there any more, and nobody has stopped it.
  std::uint64_t Done() const { return whole + withLosses + failed + incomplete; }
};

BatchCounts CountEntries(const std::vector<BatchEntry>& entries);

// The one that is first of 4, 5, 2, 3 and 0.
ExitCode WorseOf(ExitCode one, ExitCode other);

// The worst of those that are done.
ExitCode WorstCode(const std::vector<BatchEntry>& entries);

// A word for a person, a spreadsheet and a program: "whole", "losses", "failed", "incomplete",
// "stopped", "running", "waiting", "folder".
const char* StateWord(const BatchEntry& entry);

}  // namespace larkspan::console
