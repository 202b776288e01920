#include "console/follow/HungWorker.h"

#include <tlhelp32.h>
#include <winternl.h>

#include <cstdint>
#include <vector>

#include "console/follow/SystemHandle.h"

namespace larkspan::console {

namespace {

std::vector<DWORD> ChildrenOf(DWORD parentId) {
  std::vector<DWORD> children;
  const SystemHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
  if (!snapshot) return children;
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL found = Process32FirstW(snapshot.get(), &entry); found;
       found = Process32NextW(snapshot.get(), &entry)) {
    if (entry.th32ParentProcessID == parentId) children.push_back(entry.th32ProcessID);
  }
  return children;
}

// In units of the system's clock; 0 when it does not tell.
std::uint64_t CreationTime(HANDLE process) {
  FILETIME created{}, exited{}, kernel{}, user{};
  if (!GetProcessTimes(process, &created, &exited, &kernel, &user)) return 0;
  return static_cast<std::uint64_t>(created.dwHighDateTime) << 32 | created.dwLowDateTime;
}

// 0 when the system does not tell.
std::uintptr_t ParentOf(HANDLE process) {
  using Query = NTSTATUS(NTAPI*)(HANDLE, PROCESSINFOCLASS, PVOID, ULONG, PULONG);
  const auto address = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "NtQueryInformationProcess");
  const auto query = reinterpret_cast<Query>(reinterpret_cast<void*>(address));
  if (query == nullptr) return 0;
  // The last of six words is the parent's ID.
  std::uintptr_t information[6] = {};
  const NTSTATUS status =
      query(process, ProcessBasicInformation, information, sizeof information, nullptr);
  return status == 0 ? information[5] : 0;
}

bool IsWorkerOf(HANDLE process, HANDLE supervisor, DWORD supervisorId, HANDLE job) {
  BOOL inJob = FALSE;
  return IsProcessInJob(process, job, &inJob) && inJob && ParentOf(process) == supervisorId &&
         CreationTime(process) >= CreationTime(supervisor);
}

}  // namespace

bool EndWorkerOf(HANDLE supervisor, DWORD supervisorId, HANDLE job) {
  constexpr DWORD kAccess = PROCESS_TERMINATE | PROCESS_QUERY_INFORMATION | SYNCHRONIZE;
  std::vector<SystemHandle> workers;
  for (const DWORD id : ChildrenOf(supervisorId)) {
    SystemHandle process(OpenProcess(kAccess, FALSE, id));
    if (process && IsWorkerOf(process.get(), supervisor, supervisorId, job)) {
      workers.push_back(std::move(process));
    }
  }
  return workers.size() == 1 && TerminateProcess(workers.front().get(), ERROR_PROCESS_ABORTED);
}

}  // namespace larkspan::console
