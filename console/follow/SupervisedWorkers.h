// The workers of an export that is taken up again. larkspan.exe supervises from the first note on
// only, so its supervision runs here, on a thread of its own, behind a note.
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "console/follow/Exporter.h"
#include "console/follow/JobProcess.h"
#include "report/RunLog.h"
#include "supervision/Supervisor.h"
#include "supervision/WorkerLauncher.h"

namespace larkspan::console {

// Whether the audit report gets the blocks of a run, or the workers are a part of one.
enum class Supervision { kRun, kPart };

class SupervisedWorkers : public Exporter, private WorkerLauncher {
 public:
  // The arguments are those behind the program's name. `stoppable`: they get the stop pipe too.
  SupervisedWorkers(std::wstring program, std::vector<std::wstring> arguments, bool stoppable,
                    const std::wstring& password, RunLog log, FirstWorker first,
                    Supervision supervision = Supervision::kRun);

  // Ends everything that is at work.
  ~SupervisedWorkers() override;

  HANDLE ended() const override { return ended_.get(); }
  SystemHandle TakeOutput() override { return processes_.TakeOutput(); }
  void AskToStop() override { processes_.AskToStop(); }
  void EndAll() override;
  bool EndWorker() override;

  // The system's error when the last worker could not be started; else 0. Of workers that have
  // ended.
  DWORD startError() const { return startError_; }

 private:
  WorkerEnding RunToEnd(const std::wstring& commandLine, const EndSignal& signal) override;
  void Supervise(const std::wstring& commandLine, const RunLog& log, FirstWorker first,
                 Supervision supervision);

  std::wstring program_;
  ExportProcesses processes_;
  SystemHandle ended_;
  std::mutex mutex_;
  HANDLE worker_ = nullptr;
  bool endAll_ = false;
  DWORD startError_ = 0;
  std::thread thread_;
};

}  // namespace larkspan::console
