#include "tests/torture/kill/Strike.h"

#include <windows.h>

namespace larkspan::torture {

namespace {

bool AwaitMoment(const Moment& moment, const std::wstring& output, const RunningExport& running) {
  Watch watch(output, moment);
  while (!watch.Look()) {
    if (!running.IsAnyRunning()) return false;
    Sleep(1);
  }
  Sleep(static_cast<DWORD>(moment.delay.count()));
  return true;
}

// Between two workers there is none for a moment.
bool KillAWorker(RunningExport& running) {
  while (running.IsStartedRunning()) {
    if (running.KillWorker()) return true;
    Sleep(1);
  }
  return false;
}

}  // namespace

bool StrikeAt(const Moment& moment, const std::wstring& output, RunningExport& running) {
  if (!AwaitMoment(moment, output, running)) return false;
  if (moment.victim == Victim::kWorker) return KillAWorker(running);
  if (!running.KillStarted()) return false;
  if (moment.victim == Victim::kSupervisorAndWorker) running.KillWorker();
  return true;
}

bool StrikeTheNextWorker(const Moment& moment, RunningExport& running) {
  if (!moment.nextWorkerToo) return false;
  Sleep(static_cast<DWORD>(moment.nextWorkerToo->count()));
  return running.KillWorker();
}

}  // namespace larkspan::torture
