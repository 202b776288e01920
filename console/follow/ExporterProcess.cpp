#include "console/follow/ExporterProcess.h"

#include <utility>

#include "console/follow/HungWorker.h"
#include "console/text/Utf.h"

namespace larkspan::console {

std::string NotStartedText(const std::wstring& program, DWORD systemError) {
  return "'" + WideToUtf8(program) + "' could not be started (error " +
         std::to_string(systemError) + ")";
}

ExporterProcess::ExporterProcess(const std::wstring& program, std::vector<std::wstring> arguments,
                                 bool stoppable, const std::wstring& password)
    : processes_(password) {
  arguments.insert(arguments.begin(), program);
  if (stoppable) arguments.insert(arguments.end(), {L"-pipe", processes_.StopPipeText()});
  supervisor_ = processes_.Start(program, BuildCommandLine(arguments));
  processes_.StartNoMore();
}

void ExporterProcess::EndAll() {
  processes_.EndAll();
  // It may have been refused to the job.
  TerminateProcess(supervisor_.handle.get(), ERROR_PROCESS_ABORTED);
}

bool ExporterProcess::EndWorker() {
  return EndWorkerOf(supervisor_.handle.get(), supervisor_.id, processes_.job());
}

DWORD ExporterProcess::ExitCode() const {
  DWORD code = 0;
  GetExitCodeProcess(supervisor_.handle.get(), &code);
  return code;
}

}  // namespace larkspan::console
