// The entry point: settings from the command line, one role, an exit code. 0 for every role that
// ran, whatever happened inside it; 1 when the command line asks for nothing that can be done.
#include <windows.h>

#include <utility>

#include "app/Arguments.h"
#include "app/CommandLine.h"
#include "app/Dialogs.h"
#include "app/Inheritance.h"
#include "app/PasswordVariable.h"
#include "app/Role.h"
#include "app/RunWorker.h"
#include "app/SupervisorRole.h"
#include "app/TerminationHandler.h"
#include "app/VersionBox.h"
#include "base/Settings.h"
#include "listing/ListingRun.h"
#include "listing/ScanMode.h"
#include "listing/ServersMode.h"
#include "notes/Runtime.h"
#include "report/RunLog.h"
#include "supervision/EndSignal.h"

namespace larkspan {

namespace {

constexpr int kRoleRan = 0;
constexpr int kRefused = 1;

// The exit codes of a process whose main thread has ended. A worker's tells of a failure; a
// listing's is that of the thread, as the system would give it.
constexpr unsigned int kWorkerThreadEnded = 3;
constexpr unsigned int kListingThreadEnded = 0;

// Made before the closing, which may come on any thread.
const EndSignalGiver* endOfTheWorker = nullptr;

// A worker that has told of an exception came to its own end. The code of its process is not that
// of a success, though, where another compiler's code threw it.
void CloseWorker(BodyEnd end) {
  if (end == BodyEnd::kException) EndWorkerAfterException();
  LogDebug(L"Exiting via SEH finally");
  EndNotesRuntime();
  if (end != BodyEnd::kCrash) endOfTheWorker->Give();
}

void Work() {
  const Settings& settings = ProcessSettings();
  EndInheritance(settings.progressPipe);
  const EndSignalGiver end(settings.outputFolder, settings.resumeNoteId);
  endOfTheWorker = &end;
  RunWithTerminationHandler([] { RunWorker(ProcessSettings().resumeNoteId); },
                            {CloseWorker, kWorkerThreadEnded});
}

void CloseListing(BodyEnd end) {
  if (end == BodyEnd::kException) EndListingAfterException();
  if (end == BodyEnd::kCrash) EndListingAfterCrash();
}

void List(void (*mode)()) {
  EndInheritance(ProcessSettings().progressPipe);
  RunWithTerminationHandler(mode, {CloseListing, kListingThreadEnded});
}

int PlayRole(Role role) {
  switch (role) {
    case Role::kVersion:
      ShowVersionBox();
      return kRoleRan;
    case Role::kSupervisor:
      return Supervise(GetCommandLineW()) ? kRoleRan : kRefused;
    case Role::kWorker:
      Work();
      return kRoleRan;
    case Role::kScan:
      List(RunScanMode);
      return kRoleRan;
    case Role::kServers:
      List(RunServersMode);
      return kRoleRan;
    case Role::kRefused:
      return kRefused;
  }
  return kRefused;
}

}  // namespace

int RunProgram() {
  ParsedCommandLine line = ParseCommandLine(SplitCommandLine(GetCommandLineW()));
  const Role role = ChooseRole(line);
  SettlePassword(role, line);
  SetProcessSettings(std::move(line.settings));
  return PlayRole(role);
}

}  // namespace larkspan

int WINAPI wWinMain(HINSTANCE, HINSTANCE, PWSTR, int) {
  larkspan::SuppressDialogs();
  return larkspan::RunProgram();
}
