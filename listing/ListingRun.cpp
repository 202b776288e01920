// The file is opened before the runtime is started and closed after its end, so that a listing that
// fails at any step leaves a file, and a line that says why it is not complete.
#include "listing/ListingRun.h"

#include <windows.h>

#include "base/Settings.h"
#include "notes/Identity.h"
#include "notes/Runtime.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

using List = std::function<void(ListingFile&)>;

void SwitchIdAndList(ListingFile& file, const List& list) {
  const Settings& settings = ProcessSettings();
  const Status status = SwitchId(settings.idFile, settings.idPassword);
  if (status.ok()) {
    list(file);
  } else {
    LogStatus(LogLevel::kError, L"Unable to switch id (%s)", status);
  }
}

void StartAndList(ListingFile& file, const List& list) {
  const Settings& settings = ProcessSettings();
  const Status status = StartNotesRuntime(settings.programPath, settings.runtimeArguments);
  if (!status.ok()) {
    LogError(L"Notes initialization failed (%X)", static_cast<unsigned int>(status.code()));
    return;
  }
  SwitchIdAndList(file, list);
  EndNotesRuntime();
}

// The library can throw wherever it is called, at the start and the end of the runtime too.
void StartAndListOrLog(ListingFile& file, const List& list) {
  try {
    StartAndList(file, list);
  } catch (...) {
    EndListingAfterException();
  }
}

}  // namespace

void RunListing(const wchar_t* fileName, const List& list) {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  ListingFile file;
  if (!file.Open(fileName)) {
    LogError(L"Unable to open output file");
    return;
  }
  StartAndListOrLog(file, list);
  WipePassword();
  if (!file.Close()) LogError(L"Unable to write output file");
}

// After an exception the end of the runtime can throw once more, and there is nothing left to tell.
void EndListingAfterException() {
  if (IsNotesRuntimeEnding()) {
    LogExceptionOfTheEnd();
    return;
  }
  LogError(L"The listing was ended by an exception");
  try {
    EndNotesRuntime();
  } catch (...) {
  }
}

void EndListingAfterCrash() {
  LogError(L"The listing was ended by a crash");
  EndNotesRuntime();
}

}  // namespace larkspan
