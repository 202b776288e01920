#include <windows.h>

#include <tlhelp32.h>
#include <winternl.h>

#include <algorithm>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "bench/floor/Files.h"
#include "bench/floor/Floors.h"

namespace larkspan::bench {

namespace {

constexpr DWORD kPeriod = 50;

// As the system tells of all handles that there are.
struct HandleEntry {
  void* object;
  ULONG_PTR process;
  ULONG_PTR handle;
  ULONG access;
  USHORT trace;
  USHORT type;
  ULONG attributes;
  ULONG reserved;
};

struct HandleTable {
  ULONG_PTR count;
  ULONG_PTR reserved;
  HandleEntry entries[1];
};

// Of each process.
std::map<DWORD, std::uint32_t> CountHandles() {
  constexpr auto kAllHandles = static_cast<SYSTEM_INFORMATION_CLASS>(64);
  constexpr NTSTATUS kTooShort = static_cast<NTSTATUS>(0xC0000004);
  static std::vector<std::uint64_t> memory(65536);
  const auto ask = [] {
    return NtQuerySystemInformation(kAllHandles, memory.data(),
                                    static_cast<ULONG>(memory.size() * sizeof memory[0]), nullptr);
  };
  NTSTATUS status = ask();
  for (; status == kTooShort; status = ask()) memory.resize(memory.size() * 2);
  if (status != 0) Fail("ask for the handles");
  const auto* table = reinterpret_cast<const HandleTable*>(memory.data());
  std::map<DWORD, std::uint32_t> counts;
  for (ULONG_PTR i = 0; i < table->count; ++i)
    ++counts[static_cast<DWORD>(table->entries[i].process)];
  return counts;
}

std::set<DWORD> ChildrenOf(DWORD parent) {
  std::set<DWORD> children;
  const HANDLE snapshot = CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0);
  if (snapshot == INVALID_HANDLE_VALUE) Fail("ask for the processes");
  PROCESSENTRY32W entry{};
  entry.dwSize = sizeof entry;
  for (BOOL found = Process32FirstW(snapshot, &entry); found;
       found = Process32NextW(snapshot, &entry)) {
    if (entry.th32ParentProcessID == parent) children.insert(entry.th32ProcessID);
  }
  CloseHandle(snapshot);
  return children;
}

bool IsThere(const std::wstring& path) {
  return !path.empty() && GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void EndByForce(const StartedProgram& program) {
  TerminateProcess(program.process, 1);
  ExitCodeOf(program);
}

}  // namespace

HandlePeaks PeakHandlesOf(const std::wstring& commandLine, const std::wstring& until) {
  const StartedProgram program = Start(commandLine);
  HandlePeaks peaks;
  do {
    if (IsThere(until)) return EndByForce(program), peaks;
    const std::set<DWORD> children = ChildrenOf(program.id);
    for (const auto& [process, count] : CountHandles()) {
      if (process == program.id) peaks.program = std::max(peaks.program, count);
      if (children.contains(process)) peaks.child = std::max(peaks.child, count);
    }
  } while (WaitForSingleObject(program.process, kPeriod) == WAIT_TIMEOUT);
  if (ExitCodeOf(program) != 0) Fail("a program that is measured");
  return peaks;
}

}  // namespace larkspan::bench
