// Starting an export worker and waiting for its end: the narrow door through which the supervisor
// sees processes. One thread at a time.
#pragma once

#include <cstdint>
#include <string>

#include "supervision/EndSignal.h"

namespace larkspan {

// The ways in which a worker can end, as the supervisor sees them.
struct WorkerEnding {
  enum class Kind { kNotCreated, kExited, kExitCodeUnknown };

  Kind kind = Kind::kExitCodeUnknown;
  std::uint32_t code = 0;  // The system error of kNotCreated, the exit code of kExited.

  // The worker said that it was done before its process ended, or, where the system gave nothing to
  // say it with, the exit code is that of a success.
  bool atItsOwnEnd = false;
};

class WorkerLauncher {
 public:
  virtual ~WorkerLauncher() = default;

  // Starts this program again with the command line and waits, without a limit, until it ends. A
  // command line, or a path of the program, that is too long for the system to be handed on whole
  // is not started: kNotCreated with ERROR_FILENAME_EXCED_RANGE. The signal is the one that this
  // worker gives.
  virtual WorkerEnding RunToEnd(const std::wstring& commandLine, const EndSignal& signal) = 0;
};

// Starts real processes, which inherit this process's inheritable handles, its environment, its
// current folder and its standard streams.
class ProcessLauncher : public WorkerLauncher {
 public:
  // Starts this program's own file.
  ProcessLauncher();

  // Starts that file.
  explicit ProcessLauncher(std::wstring program);

  WorkerEnding RunToEnd(const std::wstring& commandLine, const EndSignal& signal) override;

 private:
  std::wstring program_;
};

}  // namespace larkspan
