#include "console/batch/EarlierExport.h"

#include <optional>

#include "base/Utf8.h"
#include "console/account/Outcome.h"
#include "console/bag/Bag.h"
#include "console/follow/AtomicFolder.h"
#include "console/follow/OutputFolder.h"

namespace larkspan::console {

namespace {

std::optional<Outcome> OutcomeOf(const std::wstring& folder, const ListedDatabase& database) {
  Outcome outcome;
  if (ReadOutcome(ExportWithin(folder), outcome) != OutcomeReading::kRead) return std::nullopt;
  if (outcome.server != database.server || outcome.path != database.path) return std::nullopt;
  return outcome;
}

// One that came to its end by itself, and is not all there, would come to the same end again.
bool CanGoOn(const Outcome& outcome) {
  return outcome.state == Outcome::State::kRunning || outcome.stop ||
         outcome.exitCode != ExitCode::kIncomplete;
}

void Take(const Outcome& outcome, const std::wstring& out, BatchEntry& entry) {
  entry.code = outcome.exitCode;
  entry.reason = outcome.reason;
  entry.out = out;
  entry.started = outcome.started;
  entry.ended = outcome.ended;
  entry.warnings = outcome.warnings.size();
  if (!outcome.account) return;
  entry.counts = outcome.account->notes;
  entry.losses = outcome.account->losses.size();
  entry.findings = outcome.account->findings.size();
  entry.warnings += outcome.account->warnings.size();
}

}  // namespace

Earlier LookForEarlier(BatchEntry& entry) {
  if (FolderExists(entry.folder) && !IsEmptyFolder(entry.folder)) {
    const std::optional<Outcome> outcome = OutcomeOf(entry.folder, entry.database);
    if (outcome && outcome->state == Outcome::State::kEnded && outcome->exitCode) {
      Take(*outcome, entry.folder, entry);
      return Earlier::kFinished;
    }
    entry.reason = "the folder '" + WideToUtf8(entry.folder) +
                   "' holds something that is not this export, finished";
    entry.code = ExitCode::kCouldNotRun;
    return Earlier::kForeign;
  }
  const std::optional<std::wstring> attempt = LastAttempt(entry.folder);
  if (!attempt) return Earlier::kNothing;
  const std::optional<Outcome> outcome = OutcomeOf(*attempt, entry.database);
  return outcome && CanGoOn(*outcome) ? Earlier::kCutOff : Earlier::kNothing;
}

bool TakeOutcome(const std::wstring& out, BatchEntry& entry) {
  const std::optional<Outcome> outcome = OutcomeOf(out, entry.database);
  if (!outcome) return false;
  Take(*outcome, out, entry);
  return true;
}

}  // namespace larkspan::console
