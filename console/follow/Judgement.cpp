#include "console/follow/Judgement.h"

#include <algorithm>

namespace larkspan::console {

namespace {

bool IsByUser(const Stop& stop) {
  return stop.by == "user" || stop.by == "input" || stop.by == "output";
}

bool IsOverLimit(const Account& account, const LossLimit& limit) {
  const auto losses = static_cast<double>(account.losses.size());
  if (!limit.isPercentage) return losses > limit.value;
  return losses * 100 >
         limit.value * static_cast<double>(std::max<std::uint64_t>(1, account.notes.listed));
}

std::string FindingsReason(const Account& account, const RunFacts& run) {
  const std::size_t count = account.findings.size();
  std::string reason = "not accounted for: " + account.findings.front().text;
  if (count > 1) reason += ", and " + std::to_string(count - 1) + " more";
  const bool isNamed = reason.find(run.lastError) != std::string::npos;
  if (!isNamed) reason += " (" + run.lastError + ")";
  return reason;
}

std::string BeforeNotesReason(const RunFacts& run) {
  std::string reason = std::string("the exporter ended while it was ") + PhaseDeed(run.phase);
  if (!run.lastError.empty()) reason += ": " + run.lastError;
  return reason;
}

}  // namespace

std::string StopReason(const Stop& stop) {
  if (stop.by == "user") return "stopped by the user";
  if (stop.by == "input") return "stopped: standard input has come to its end";
  if (stop.by == "output") return "stopped: nobody reads standard output";
  if (stop.by == "disk") return "stopped: less than 64 MB are free on the disk";
  if (stop.by == "give-up") return "given up: too many notes in a row were lost for the same cause";
  return "ended: there was no progress";
}

Judgement Judge(const RunFacts& run, const std::optional<Stop>& stop,
                const std::optional<Account>& account, const std::optional<LossLimit>& limit) {
  if (!run.notStarted.empty()) return {ExitCode::kCouldNotRun, run.notStarted};
  const bool accountedFor = account && account->findings.empty();
  // A stop that came too late has stopped nothing.
  if (stop && !accountedFor) {
    if (IsByUser(*stop)) return {ExitCode::kStopped, StopReason(*stop)};
    const bool notBegun = stop->by == "stall" && !run.hasBegunNotes;
    return {
        notBegun ? ExitCode::kCouldNotRun : ExitCode::kIncomplete,
        notBegun ? StopReason(*stop) + " while it was " + PhaseDeed(run.phase) : StopReason(*stop)};
  }
  if (!accountedFor && !run.hasBegunNotes) return {ExitCode::kCouldNotRun, BeforeNotesReason(run)};
  if (!account) return {ExitCode::kIncomplete, run.cannotJudge};
  if (!accountedFor) return {ExitCode::kIncomplete, FindingsReason(*account, run)};
  if (limit && IsOverLimit(*account, *limit)) {
    return {ExitCode::kIncomplete, "more is lost than --max-losses allows"};
  }
  if (account->Verdict() == ExitCode::kLosses) {
    const std::size_t losses = account->losses.size();
    return {ExitCode::kLosses, losses == 1
                                   ? "one loss, which is listed"
                                   : std::to_string(losses) + " losses, each of which is listed"};
  }
  return {ExitCode::kWhole, ""};
}

}  // namespace larkspan::console
