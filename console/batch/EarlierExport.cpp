#include "console/batch/EarlierExport.h"

#include <optional>

#include "base/FolderFiles.h"
#include "base/Utf8.h"
#include "console/account/Outcome.h"
#include "console/bag/SealState.h"
#include "console/follow/AtomicFolder.h"
#include "console/follow/EarlierRun.h"
#include "console/follow/OutputFolder.h"
#include "console/parts/JoinParts.h"

namespace larkspan::console {

namespace {

std::optional<Outcome> OutcomeOf(const std::wstring& folder, const ListedDatabase& database) {
  Outcome outcome;
  if (ReadEarlierOutcome(folder, outcome) != OutcomeReading::kRead) return std::nullopt;
  if (!IsOfDatabase(outcome, database.server, database.path)) return std::nullopt;
  return outcome;
}

// An export that is gone on with keeps the options that it was begun with.
bool HasOptions(const Outcome& outcome, const ExportRequest& wanted) {
  return outcome.archive == wanted.archive && outcome.views == wanted.views &&
         outcome.fullAccess == wanted.fullAccess && outcome.idFile == wanted.idFile &&
         outcome.notesIni == wanted.notesIni;
}

// One that came to its end by itself, and is not all there, would come to the same end again. What
// was given up was lost for one cause, in a row, and would stay lost. What several workers have
// exported and could not be joined is joined when it is gone on with.
bool CanGoOn(const Outcome& outcome, const std::wstring& out, const ExportRequest& wanted) {
  if (!HasOptions(outcome, wanted)) return false;
  if (outcome.stop) return outcome.stop->by != "give-up";
  return outcome.state == Outcome::State::kRunning || outcome.exitCode != ExitCode::kIncomplete ||
         HasParts(out);
}

void Take(const Outcome& outcome, const std::wstring& out, BatchEntry& entry) {
  entry.code = outcome.exitCode;
  entry.reason = outcome.reason;
  entry.out = out;
  entry.started = outcome.started;
  entry.since = outcome.resumed.empty() ? outcome.started : outcome.resumed.back().time;
  entry.ended = outcome.ended;
  entry.warnings = outcome.warnings.size();
  if (!outcome.account) return;
  entry.counts = outcome.account->notes;
  entry.losses = outcome.account->losses.size();
  entry.findings = outcome.account->findings.size();
  entry.warnings += outcome.account->warnings.size();
}

// Empty: a finished export of this database in this form, which the entry tells of then.
std::string WhyNotFinished(const ExportRequest& wanted, BatchEntry& entry) {
  const std::string name = "the folder '" + WideToUtf8(entry.folder) + "' ";
  if (const std::string fault = WhySealIsUnfinished(entry.folder); !fault.empty())
    return name + "is half sealed. " + fault;
  const std::optional<Outcome> outcome = OutcomeOf(entry.folder, entry.database);
  if (!outcome) return name + "holds something that is not this export";
  if (outcome->archive != wanted.archive) return name + "holds an export of it in another form";
  if (!IsFinished(*outcome))
    return name +
           "holds an export of it that has not come to a good end: go on with that by "
           "'larkspan-console export --resume', or give the folder another name";
  Take(*outcome, entry.folder, entry);
  return {};
}

Earlier JudgeFolder(const ExportRequest& wanted, BatchEntry& entry) {
  const std::string whyNot = WhyNotFinished(wanted, entry);
  if (whyNot.empty()) return Earlier::kFinished;
  entry.code = ExitCode::kCouldNotRun;
  entry.reason = whyNot;
  return Earlier::kInTheWay;
}

}  // namespace

Earlier LookForEarlier(const ExportRequest& wanted, BatchEntry& entry) {
  if (FileExists(entry.folder) || (FolderExists(entry.folder) && !IsEmptyFolder(entry.folder)))
    return JudgeFolder(wanted, entry);
  const std::optional<std::wstring> attempt = LastAttempt(entry.folder);
  if (!attempt) return Earlier::kNothing;
  const std::optional<Outcome> outcome = OutcomeOf(*attempt, entry.database);
  return outcome && CanGoOn(*outcome, *attempt, wanted) ? Earlier::kCutOff : Earlier::kNothing;
}

bool TakeOutcome(const std::wstring& out, BatchEntry& entry) {
  const std::optional<Outcome> outcome = OutcomeOf(out, entry.database);
  if (!outcome) return false;
  Take(*outcome, out, entry);
  return true;
}

}  // namespace larkspan::console
