// Processes of one export, started as the exporter's documentation asks a calling program to: with
// a standard output and a stop pipe of this program's making, in a job that takes them along when
// this program ends, however that comes about.
#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "base/CommandLineText.h"
#include "console/follow/SystemHandle.h"

namespace larkspan::console {

// This program's own file; empty when the system does not tell its path whole.
std::wstring OwnPath();

// larkspan.exe beside that; empty as well then.
std::wstring ExporterPath();

struct StartedProcess {
  SystemHandle handle;  // Empty: it could not be started.
  DWORD id = 0;
  DWORD systemError = 0;
};

// How a process is asked to stop: the pipe whose end tells it is named on its command line, or is
// its standard input. One of the second kind writes what goes wrong where its output goes.
enum class StopBy { kNamedPipe, kEndOfInput };

// What the processes of one export share.
class ExportProcesses {
 public:
  // `password` goes into the environment of each process, and is not in this program's afterwards;
  // empty: none does.
  explicit ExportProcesses(std::wstring password, StopBy stopBy = StopBy::kNamedPipe);
  ~ExportProcesses();
  ExportProcesses(const ExportProcesses&) = delete;
  ExportProcesses& operator=(const ExportProcesses&) = delete;

  // The value for "-pipe".
  std::wstring StopPipeText() const;

  StartedProcess Start(const std::wstring& program, const std::wstring& commandLine) const;

  HANDLE job() const { return job_.get(); }

  // What the processes write, for whoever reads it to its end.
  SystemHandle TakeOutput() { return std::move(output_.readEnd); }

  // No process will be started any more: the output ends with those that are at work.
  void StartNoMore() { output_.writeEnd.Reset(); }

  void AskToStop() { stop_.writeEnd.Reset(); }

  // Ends all of them at once.
  void EndAll() const { TerminateJobObject(job_.get(), ERROR_PROCESS_ABORTED); }

 private:
  SystemHandle job_;
  Pipe output_;
  Pipe stop_;
  std::wstring password_;
  StopBy stopBy_;
};

}  // namespace larkspan::console
