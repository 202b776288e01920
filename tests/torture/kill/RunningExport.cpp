#include "tests/torture/kill/RunningExport.h"

#include <tlhelp32.h>

#include <array>
#include <cstddef>
#include <stdexcept>

namespace larkspan::torture {

namespace {

using testing::UniqueSystemHandle;

constexpr DWORD kEndLimitMilliseconds = 10000;

UniqueSystemHandle Nowhere() {
  SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
  return UniqueSystemHandle(CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        &inheritable, OPEN_EXISTING, 0, nullptr));
}

// A process that has ended keeps its exit code for whoever has a handle.
bool KillByHandle(HANDLE process) {
  TerminateProcess(process, kKilled);
  if (WaitForSingleObject(process, kEndLimitMilliseconds) != WAIT_OBJECT_0) {
    throw std::runtime_error("a process does not end when it is killed");
  }
  DWORD code = 0;
  return GetExitCodeProcess(process, &code) != 0 && code == kKilled;
}

UniqueSystemHandle OpenWorker(DWORD id) {
  return UniqueSystemHandle(
      OpenProcess(PROCESS_TERMINATE | PROCESS_QUERY_INFORMATION | SYNCHRONIZE, FALSE, id));
}

bool IsSuspended(DWORD threadId) {
  const UniqueSystemHandle thread(OpenThread(THREAD_SUSPEND_RESUME, FALSE, threadId));
  const DWORD earlier = SuspendThread(thread.get());
  if (earlier == static_cast<DWORD>(-1)) return false;
  ResumeThread(thread.get());
  return earlier > 0;
}

// Whether the process has threads, all of which are suspended.
bool IsSuspendedProcess(DWORD processId) {
  const UniqueSystemHandle threads(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  bool hasThreads = false;
  for (BOOL more = Thread32First(threads.get(), &entry); more;
       more = Thread32Next(threads.get(), &entry)) {
    if (entry.th32OwnerProcessID != processId) continue;
    if (!IsSuspended(entry.th32ThreadID)) return false;
    hasThreads = true;
  }
  return hasThreads;
}

}  // namespace

// Suspended until it belongs to the job, so that its worker does too.
RunningExport::RunningExport(const std::wstring& executable, const std::wstring& commandLine)
    : job_(CreateJobObjectW(nullptr, nullptr)) {
  const UniqueSystemHandle nowhere = Nowhere();
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = nowhere.get();
  PROCESS_INFORMATION process{};
  std::wstring writable = commandLine;
  if (!CreateProcessW(executable.c_str(), writable.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED,
                      nullptr, nullptr, &startup, &process)) {
    throw std::runtime_error("the program does not start");
  }
  started_ = UniqueSystemHandle(process.hProcess);
  startedId_ = process.dwProcessId;
  const UniqueSystemHandle thread(process.hThread);
  if (!AssignProcessToJobObject(job_.get(), started_.get())) {
    TerminateProcess(started_.get(), kKilled);
    throw std::runtime_error("the program cannot be watched");
  }
  ResumeThread(thread.get());
}

RunningExport::~RunningExport() { TerminateJobObject(job_.get(), kKilled); }

std::vector<DWORD> RunningExport::ProcessIds() const {
  constexpr std::size_t kMostProcesses = 8;
  struct {
    JOBOBJECT_BASIC_PROCESS_ID_LIST list;
    std::array<ULONG_PTR, kMostProcesses> behind;
  } ids{};
  if (!QueryInformationJobObject(job_.get(), JobObjectBasicProcessIdList, &ids, sizeof ids,
                                 nullptr)) {
    throw std::runtime_error("the processes of a job cannot be told");
  }
  const ULONG_PTR* const first = ids.list.ProcessIdList;
  return std::vector<DWORD>(first, first + ids.list.NumberOfProcessIdsInList);
}

bool RunningExport::IsStartedRunning() const {
  return WaitForSingleObject(started_.get(), 0) != WAIT_OBJECT_0;
}

bool RunningExport::KillStarted() { return KillByHandle(started_.get()); }

std::vector<DWORD> RunningExport::WorkerIds() const {
  std::vector<DWORD> ids = ProcessIds();
  std::erase(ids, startedId_);
  return ids;
}

bool RunningExport::KillWorker() {
  for (const DWORD id : WorkerIds()) {
    const UniqueSystemHandle worker = OpenWorker(id);
    if (worker.get() != nullptr) return KillByHandle(worker.get());
  }
  return false;
}

bool RunningExport::KillUnbornWorker() {
  for (const DWORD id : WorkerIds()) {
    const UniqueSystemHandle worker = OpenWorker(id);
    if (worker.get() != nullptr && IsSuspendedProcess(id)) return KillByHandle(worker.get());
  }
  return false;
}

bool RunningExport::AwaitEndOfAll(std::chrono::milliseconds limit) const {
  const auto end = std::chrono::steady_clock::now() + limit;
  while (IsAnyRunning()) {
    if (std::chrono::steady_clock::now() > end) return false;
    Sleep(5);
  }
  return true;
}

DWORD RunningExport::ExitCode() const {
  DWORD code = 0;
  GetExitCodeProcess(started_.get(), &code);
  return code;
}

}  // namespace larkspan::torture
