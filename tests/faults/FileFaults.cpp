#include "tests/faults/FileFaults.h"

#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <mutex>

#include "base/Utf8.h"

namespace larkspan {

namespace {

struct CountedFault {
  FileFault fault;
  int calls = 0;
};

struct State {
  std::mutex mutex;
  std::vector<CountedFault> faults;
  bool records = false;
  std::vector<std::string> operations;
};

std::vector<CountedFault> Counted(const std::string& plan) {
  std::vector<CountedFault> counted;
  for (FileFault& fault : ParseFileFaultPlan(plan)) counted.push_back({std::move(fault)});
  return counted;
}

std::string PlanOfTheEnvironment() {
  const wchar_t* const plan = _wgetenv(kFileFaultsVariable);
  return plan == nullptr ? std::string() : WideToUtf8(plan);
}

// Never destroyed: a thread may still write to the log while the process exits.
State& CurrentState() {
  static State& state = *[] {
    auto* made = new State;
    made->faults = Counted(PlanOfTheEnvironment());
    return made;
  }();
  return state;
}

bool Strikes(CountedFault& counted, const std::string& operation, const std::string& file) {
  const FileFault& fault = counted.fault;
  if (fault.operation != operation || (fault.file != "*" && fault.file != file)) return false;
  ++counted.calls;
  return counted.calls >= fault.firstCall && counted.calls <= fault.lastCall;
}

}  // namespace

FileFaults::FileFaults(const std::string& plan) {
  std::vector<CountedFault> faults = Counted(plan);
  State& state = CurrentState();
  const std::lock_guard lock(state.mutex);
  state.faults = std::move(faults);
  state.operations.clear();
  state.records = true;
}

FileFaults::~FileFaults() {
  State& state = CurrentState();
  const std::lock_guard lock(state.mutex);
  state.faults.clear();
  state.records = false;
}

std::vector<std::string> FileFaults::Operations() const {
  State& state = CurrentState();
  const std::lock_guard lock(state.mutex);
  return state.operations;
}

std::vector<std::string> FileFaults::OperationsAmong(const std::vector<std::string>& wanted) const {
  std::vector<std::string> operations = Operations();
  std::erase_if(operations, [&](const std::string& operation) {
    return std::find(wanted.begin(), wanted.end(), operation) == wanted.end();
  });
  return operations;
}

std::optional<FileFault> CountFileOperation(const std::string& operation, const std::string& file) {
  State& state = CurrentState();
  const std::lock_guard lock(state.mutex);
  if (state.records) state.operations.push_back(operation + " " + file);
  std::optional<FileFault> struck;
  for (CountedFault& counted : state.faults) {
    if (Strikes(counted, operation, file) && !struck) struck = counted.fault;
  }
  return struck;
}

}  // namespace larkspan
