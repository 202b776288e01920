#include "console/follow/EarlierRun.h"

#include "console/bag/Bag.h"
#include "console/bag/SealState.h"
#include "console/follow/AtomicFolder.h"
#include "console/follow/OutputFolder.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

bool HoldsSomething(const std::wstring& folder) {
  return FolderExists(folder) && !IsEmptyFolder(folder);
}

}  // namespace

OutcomeReading ReadEarlierOutcome(const std::wstring& folder, Outcome& outcome) {
  return ReadOutcome(ExportWithin(folder), outcome);
}

bool IsOfDatabase(const Outcome& outcome, const std::string& server, const std::string& path) {
  return IsSameName(Utf8ToWide(outcome.server), Utf8ToWide(server)) && outcome.path == path;
}

bool IsSameExport(const Outcome& outcome, const ExportRequest& request) {
  return IsOfDatabase(outcome, request.server, request.path) && outcome.archive == request.archive;
}

bool IsFinished(const Outcome& outcome) {
  return outcome.state == Outcome::State::kEnded &&
         (outcome.exitCode == ExitCode::kWhole || outcome.exitCode == ExitCode::kLosses);
}

std::optional<std::wstring> FolderToResume(const ExportRequest& request) {
  const std::wstring out = WholePath(request.out);
  if (!request.resume || HoldsSomething(out))
    return request.resume ? std::optional(out) : std::nullopt;
  const std::optional<std::wstring> attempt =
      request.atomic ? LastAttempt(out) : std::optional<std::wstring>();
  return attempt && HoldsSomething(*attempt) ? attempt : std::nullopt;
}

std::string AdoptEarlierRun(ExportRequest& request) {
  const std::optional<std::wstring> folder = FolderToResume(request);
  if (!folder) return {};
  const std::string name = "'" + WideToUtf8(*folder) + "'";
  if (const std::string fault = WhySealIsUnfinished(*folder); !fault.empty())
    return "the folder " + name + " is half sealed. " + fault;
  Outcome earlier;
  if (ReadEarlierOutcome(*folder, earlier) != OutcomeReading::kRead) {
    return "the folder " + name + " has no outcome.json to go on from";
  }
  if (request.path.empty()) {
    if (request.server.empty()) request.server = earlier.server;
    request.path = earlier.path;
    request.archive = earlier.archive;
  }
  if (!IsSameExport(earlier, request))
    return "the export in " + name + " is of another database or form";
  request.views = earlier.views;
  request.fullAccess = earlier.fullAccess;
  if (request.idFile.empty()) request.idFile = earlier.idFile;
  if (request.notesIni.empty()) request.notesIni = earlier.notesIni;
  return {};
}

}  // namespace larkspan::console
