#include "console/follow/SupervisedWorkers.h"

#include <utility>

namespace larkspan::console {

namespace {

// Leaves the supervision where it stands: the marker stays, and nothing more is written.
struct EndedByForce {};

}  // namespace

SupervisedWorkers::SupervisedWorkers(std::wstring program, std::vector<std::wstring> arguments,
                                     bool stoppable, const std::wstring& password, RunLog log,
                                     FirstWorker first, Supervision supervision)
    : program_(std::move(program)),
      processes_(password),
      ended_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  arguments.insert(arguments.begin(), program_);
  if (stoppable) arguments.insert(arguments.end(), {L"-pipe", processes_.StopPipeText()});
  thread_ = std::thread([this, commandLine = BuildCommandLine(arguments), log = std::move(log),
                         first, supervision] { Supervise(commandLine, log, first, supervision); });
}

SupervisedWorkers::~SupervisedWorkers() {
  EndAll();
  thread_.join();
}

void SupervisedWorkers::Supervise(const std::wstring& commandLine, const RunLog& log,
                                  FirstWorker first, Supervision supervision) {
  const auto run = supervision == Supervision::kRun ? RunSupervisor : RunWorkers;
  try {
    run(*this, commandLine, log, first);
  } catch (const EndedByForce&) {
  }
  processes_.StartNoMore();
  SetEvent(ended_.get());
}

WorkerEnding SupervisedWorkers::RunToEnd(const std::wstring& commandLine, const EndSignal& signal) {
  StartedProcess started;
  {
    const std::lock_guard lock(mutex_);
    if (endAll_) throw EndedByForce{};
    started = processes_.Start(program_, commandLine);
    worker_ = started.handle.get();
  }
  startError_ = started.systemError;
  if (!started.handle) return {WorkerEnding::Kind::kNotCreated, started.systemError};
  WaitForSingleObject(started.handle.get(), INFINITE);
  const std::lock_guard lock(mutex_);
  worker_ = nullptr;
  if (endAll_) throw EndedByForce{};
  DWORD code = 0;
  if (!GetExitCodeProcess(started.handle.get(), &code)) {
    return {WorkerEnding::Kind::kExitCodeUnknown, 0, signal.IsGiven()};
  }
  return {WorkerEnding::Kind::kExited, code, signal.IsGiven()};
}

void SupervisedWorkers::EndAll() {
  const std::lock_guard lock(mutex_);
  endAll_ = true;
  processes_.EndAll();
  if (worker_ != nullptr) TerminateProcess(worker_, ERROR_PROCESS_ABORTED);
}

bool SupervisedWorkers::EndWorker() {
  const std::lock_guard lock(mutex_);
  return worker_ != nullptr && TerminateProcess(worker_, ERROR_PROCESS_ABORTED);
}

}  // namespace larkspan::console
