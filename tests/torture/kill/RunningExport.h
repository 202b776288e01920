// An export that runs, with its supervisor and its worker as processes that can be ended from
// outside.
#pragma once

#include <windows.h>

#include <chrono>
#include <string>
#include <vector>

#include "tests/support/SystemProcess.h"

namespace larkspan::torture {

// The exit code of a process that was ended from outside here.
inline constexpr UINT kKilled = 0xDEAD;

class RunningExport {
 public:
  // Starts the program. It and all that it starts are one job, of which nothing outlives the
  // object. Throws when it cannot be started.
  RunningExport(const std::wstring& executable, const std::wstring& commandLine);
  ~RunningExport();
  RunningExport(const RunningExport&) = delete;
  RunningExport& operator=(const RunningExport&) = delete;

  // Ends the process that was started, or the one that it started and that has begun to run, if
  // there is one. False when that had ended by itself before.
  bool KillStarted();
  bool KillWorker() { return KillWorker(true); }

  // Ends a worker that was only being made when its supervisor died: a process begins to run when
  // its parent says so. To be asked when nobody is left to say it. False when there is none.
  bool KillUnbornWorker() { return KillWorker(false); }

  bool IsStartedRunning() const;
  bool IsAnyRunning() const { return !ProcessIds().empty(); }

  // False when a process is left after that time.
  bool AwaitEndOfAll(std::chrono::milliseconds limit) const;

  // Of the process that was started, when it has ended.
  DWORD ExitCode() const;

 private:
  std::vector<DWORD> ProcessIds() const;
  bool KillWorker(bool hasBegun);

  testing::UniqueSystemHandle job_;
  testing::SystemProcess started_;
};

}  // namespace larkspan::torture
