// One run of larkspan.exe, which supervises its workers itself.
#pragma once

#include <string>
#include <vector>

#include "console/follow/Exporter.h"
#include "console/follow/JobProcess.h"

namespace larkspan::console {

// The sentence for a program that could not be started.
std::string NotStartedText(const std::wstring& program, DWORD systemError);

class ExporterProcess : public Exporter {
 public:
  // The arguments are those behind the program's name. `stoppable`: they get the stop pipe too.
  // When it could not be started, Started() is false and systemError() says why.
  ExporterProcess(const std::wstring& program, std::vector<std::wstring> arguments, bool stoppable,
                  const std::wstring& password);

  bool Started() const { return static_cast<bool>(supervisor_.handle); }
  DWORD systemError() const { return supervisor_.systemError; }

  HANDLE ended() const override { return supervisor_.handle.get(); }
  SystemHandle TakeOutput() override { return processes_.TakeOutput(); }
  void AskToStop() override { processes_.AskToStop(); }
  void EndAll() override;
  bool EndWorker() override;

  // Of an exporter that has ended.
  DWORD ExitCode() const;

 private:
  ExportProcesses processes_;
  StartedProcess supervisor_;
};

}  // namespace larkspan::console
