// The command line is tried as a worker's before anything is written: a child that is a supervisor
// again would start supervisors without end.
#include "app/SupervisorRole.h"

#include "app/Arguments.h"
#include "app/CommandLine.h"
#include "report/RunLog.h"
#include "supervision/Supervisor.h"
#include "supervision/WorkerLauncher.h"

namespace larkspan {

bool MakesWorkers(const std::wstring& commandLine) {
  const ParsedCommandLine worker =
      ParseCommandLine(SplitCommandLine(WorkerCommandLine(commandLine, 0)));
  return worker.accepted && worker.settings.resumeNoteId == 0;
}

bool Supervise(const std::wstring& commandLine) {
  if (!MakesWorkers(commandLine)) return false;
  ProcessLauncher launcher;
  RunSupervisor(launcher, commandLine, ProcessRunLog());
  return true;
}

}  // namespace larkspan
