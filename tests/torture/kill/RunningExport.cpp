#include "tests/torture/kill/RunningExport.h"

#include <tlhelp32.h>

#include <array>
#include <cstddef>
#include <stdexcept>

namespace larkspan::torture {

namespace {

using testing::UniqueSystemHandle;

constexpr DWORD kEndLimitMilliseconds = 10000;

// A process that has ended keeps its exit code for whoever has a handle.
bool KillByHandle(HANDLE process) {
  TerminateProcess(process, kKilled);
  const std::optional<DWORD> code = testing::AwaitExitCode(process, kEndLimitMilliseconds);
  if (!code) throw std::runtime_error("a process does not end when it is killed");
  return *code == kKilled;
}

bool IsSuspended(DWORD threadId) {
  const UniqueSystemHandle thread(OpenThread(THREAD_SUSPEND_RESUME, FALSE, threadId));
  const DWORD earlier = SuspendThread(thread.get());
  if (earlier == static_cast<DWORD>(-1)) return false;
  ResumeThread(thread.get());
  return earlier > 0;
}

enum class Life { kWithoutThreads, kSuspended, kBegun };

Life LifeOf(DWORD processId) {
  const UniqueSystemHandle threads(CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0));
  THREADENTRY32 entry{};
  entry.dwSize = sizeof entry;
  Life life = Life::kWithoutThreads;
  for (BOOL more = Thread32First(threads.get(), &entry); more;
       more = Thread32Next(threads.get(), &entry)) {
    if (entry.th32OwnerProcessID != processId) continue;
    if (!IsSuspended(entry.th32ThreadID)) return Life::kBegun;
    life = Life::kSuspended;
  }
  return life;
}

}  // namespace

RunningExport::RunningExport(const std::wstring& executable, const std::wstring& commandLine)
    : job_(CreateJobObjectW(nullptr, nullptr)),
      started_(testing::StartProcess(executable, commandLine, testing::OpenNowhere().get(),
                                     job_.get())) {}

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
  return !testing::AwaitExitCode(started_.handle.get(), 0);
}

bool RunningExport::KillStarted() { return KillByHandle(started_.handle.get()); }

bool RunningExport::KillWorker(bool hasBegun) {
  for (const DWORD id : ProcessIds()) {
    const Life wanted = hasBegun ? Life::kBegun : Life::kSuspended;
    if (id == started_.id || LifeOf(id) != wanted) continue;
    const UniqueSystemHandle worker(
        OpenProcess(PROCESS_TERMINATE | PROCESS_QUERY_INFORMATION | SYNCHRONIZE, FALSE, id));
    if (worker.get() != nullptr) return KillByHandle(worker.get());
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
  return testing::AwaitExitCode(started_.handle.get(), 0).value_or(STILL_ACTIVE);
}

}  // namespace larkspan::torture
