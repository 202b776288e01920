#include "console/batch/BatchEntry.h"

#include <algorithm>
#include <array>

namespace larkspan::console {

namespace {

void CountEnded(ExitCode code, BatchCounts& counts) {
  switch (code) {
    case ExitCode::kWhole:
      ++counts.whole;
      break;
    case ExitCode::kLosses:
      ++counts.withLosses;
      break;
    case ExitCode::kStopped:
      ++counts.stopped;
      break;
    case ExitCode::kIncomplete:
      ++counts.incomplete;
      break;
    case ExitCode::kUsage:
    case ExitCode::kCouldNotRun:
      ++counts.failed;
      break;
  }
}

const char* CodeWord(ExitCode code) {
  switch (code) {
    case ExitCode::kWhole:
      return "whole";
    case ExitCode::kLosses:
      return "losses";
    case ExitCode::kStopped:
      return "stopped";
    case ExitCode::kIncomplete:
      return "incomplete";
    case ExitCode::kUsage:
    case ExitCode::kCouldNotRun:
      break;
  }
  return "failed";
}

// The worst first.
constexpr std::array<ExitCode, 5> kByRank = {ExitCode::kStopped, ExitCode::kIncomplete,
                                             ExitCode::kCouldNotRun, ExitCode::kLosses,
                                             ExitCode::kWhole};

std::size_t RankOf(ExitCode code) {
  if (code == ExitCode::kUsage) code = ExitCode::kCouldNotRun;
  return static_cast<std::size_t>(std::find(kByRank.begin(), kByRank.end(), code) -
                                  kByRank.begin());
}

}  // namespace

BatchCounts CountEntries(const std::vector<BatchEntry>& entries) {
  BatchCounts counts;
  counts.all = entries.size();
  for (const BatchEntry& entry : entries) {
    if (entry.state == BatchState::kWaiting) ++counts.notBegun;
    if (entry.state == BatchState::kRunning) ++counts.running;
    if (entry.state == BatchState::kLeftOut) ++counts.leftOut;
    if (entry.state == BatchState::kFinished) ++counts.before;
    if (entry.code) CountEnded(*entry.code, counts);
  }
  return counts;
}

ExitCode WorseOf(ExitCode one, ExitCode other) {
  return kByRank[std::min(RankOf(one), RankOf(other))];
}

ExitCode WorstCode(const std::vector<BatchEntry>& entries) {
  ExitCode worst = ExitCode::kWhole;
  for (const BatchEntry& entry : entries) worst = WorseOf(worst, entry.code.value_or(worst));
  return worst;
}

const char* StateWord(const BatchEntry& entry) {
  if (entry.code) return CodeWord(*entry.code);
  if (entry.state == BatchState::kLeftOut) return "folder";
  return entry.state == BatchState::kRunning ? "running" : "waiting";
}

}  // namespace larkspan::console
