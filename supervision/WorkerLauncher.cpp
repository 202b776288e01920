// The end of a worker is told by two things: the exit code, which the library can choose as well,
// and the signal that only a worker that came to its own end gives.
#include "supervision/WorkerLauncher.h"

#include <windows.h>

#include <array>
#include <utility>

namespace larkspan {

namespace {

// The longest that the system takes, its NUL left out. A longer one could lose its end, and with it
// the note ID that makes the new process a worker.
constexpr std::size_t kMaxCommandLine = 32766;

// Whole or empty: a cut path could be that of another program.
std::wstring OwnPath() {
  constexpr DWORD kMaxPathLength = 261;
  std::array<wchar_t, kMaxPathLength + 1> path{};
  const DWORD length = GetModuleFileNameW(nullptr, path.data(), kMaxPathLength + 1);
  return length <= kMaxPathLength ? std::wstring(path.data(), length) : std::wstring();
}

WorkerEnding WaitForEnd(const PROCESS_INFORMATION& process, const EndSignal& signal) {
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD exitCode = 0;
  const bool known = GetExitCodeProcess(process.hProcess, &exitCode) != 0;
  CloseHandle(process.hProcess);
  CloseHandle(process.hThread);
  const bool atItsOwnEnd = signal.IsAvailable() ? signal.IsGiven() : known && exitCode == 0;
  if (!known) return {WorkerEnding::Kind::kExitCodeUnknown, 0, atItsOwnEnd};
  return {WorkerEnding::Kind::kExited, exitCode, atItsOwnEnd};
}

}  // namespace

ProcessLauncher::ProcessLauncher() : ProcessLauncher(OwnPath()) {}

ProcessLauncher::ProcessLauncher(std::wstring program) : program_(std::move(program)) {}

WorkerEnding ProcessLauncher::RunToEnd(const std::wstring& commandLine, const EndSignal& signal) {
  constexpr BOOL kInheritHandles = TRUE;
  if (program_.empty() || commandLine.size() > kMaxCommandLine) {
    return {WorkerEnding::Kind::kNotCreated, ERROR_FILENAME_EXCED_RANGE};
  }
  std::wstring writableCommandLine = commandLine;
  STARTUPINFOW startup{};
  PROCESS_INFORMATION process{};
  const BOOL created =
      CreateProcessW(program_.c_str(), writableCommandLine.data(), nullptr, nullptr,
                     kInheritHandles, 0, nullptr, nullptr, &startup, &process);
  if (!created) return {WorkerEnding::Kind::kNotCreated, GetLastError()};
  return WaitForEnd(process, signal);
}

}  // namespace larkspan
