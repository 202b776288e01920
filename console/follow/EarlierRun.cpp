#include "console/follow/EarlierRun.h"

#include "console/follow/AtomicFolder.h"
#include "console/follow/OutputFolder.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

bool HoldsSomething(const std::wstring& folder) {
  return FolderExists(folder) && !IsEmptyFolder(folder);
}

}  // namespace

bool IsSameExport(const Outcome& outcome, const ExportRequest& request) {
  return outcome.server == request.server && outcome.path == request.path &&
         outcome.archive == request.archive;
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
  Outcome earlier;
  if (ReadOutcome(*folder, earlier) != OutcomeReading::kRead) {
    return "the folder " + name + " has no outcome.json to go on from";
  }
  if (request.path.empty()) {
    request.server = earlier.server;
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
