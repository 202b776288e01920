// A worker ends the runtime that it has started on every way out, and leaves a marker only where
// the supervisor is to try again. What leaves the export as an exception is told here, once.
#include "app/RunWorker.h"

#include <windows.h>

#include <string>

#include "base/Settings.h"
#include "export/WorkerRun.h"
#include "notes/Identity.h"
#include "notes/Runtime.h"
#include "notes/StatusCodes.h"
#include "notes/Text.h"
#include "report/AuditReport.h"
#include "report/MarkerFile.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

bool StartRuntimeOrLog(std::uint32_t resumeNoteId) {
  const Settings& settings = ProcessSettings();
  const Status status = StartNotesRuntime(settings.programPath, settings.runtimeArguments);
  if (status.ok()) return true;
  if (status.IsError(kConfigurationNotFound)) {
    LogError(L"Unable to locate notes.ini");
    return false;
  }
  LogWarning(L"Notes initialization failed (%X)", static_cast<unsigned int>(status.code()));
  WriteMarkerFile(resumeNoteId);
  return false;
}

bool SwitchIdOrLog() {
  const Settings& settings = ProcessSettings();
  const Status status = SwitchId(settings.idFile, settings.idPassword);
  if (!status.ok()) LogStatus(LogLevel::kError, L"Unable to switch ID (%s)", status);
  return status.ok();
}

void AuditUser() {
  constexpr std::size_t kMaxWideBytes = 512;
  std::string userName;
  // A library that does not know its user gives no name, and the report shows that.
  if (!GetCurrentUserName(userName).ok()) userName.clear();
  Audit(L"Set user to: %s\n", NotesToWide(userName, kMaxWideBytes).c_str());
}

// What the export has done stands, whatever the library does at its end.
void EndRuntimeOrLog() {
  try {
    EndNotesRuntime();
  } catch (...) {
    LogExceptionOfTheEnd();
  }
}

void StartAndExport(std::uint32_t resumeNoteId) {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  if (!StartRuntimeOrLog(resumeNoteId)) return;
  if (!SwitchIdOrLog()) return;
  if (resumeNoteId == 0) AuditUser();
  RunExport(resumeNoteId);
  EndRuntimeOrLog();
}

void TellExceptionOfTheExport() {
  LogDebug(L"Exiting via catch-all handler");
  // A marker makes the supervisor name the note and go on; without one this is the run's end.
  if (!HasMarkerFile()) LogError(L"The export was ended by an exception");
}

}  // namespace

void RunWorker(std::uint32_t resumeNoteId) {
  try {
    StartAndExport(resumeNoteId);
  } catch (...) {
    TellExceptionOfTheExport();
    EndRuntimeOrLog();
  }
  WipePassword();
}

void EndWorkerAfterException() {
  if (IsNotesRuntimeEnding()) {
    LogExceptionOfTheEnd();
  } else {
    TellExceptionOfTheExport();
    EndRuntimeOrLog();
  }
}

}  // namespace larkspan
