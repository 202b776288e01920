#include "tests/support/SystemProcess.h"

#include <stdexcept>
#include <string>
#include <utility>

namespace larkspan::testing {

namespace {

constexpr UINT kNotWatched = 1;

}  // namespace

UniqueSystemHandle::UniqueSystemHandle(UniqueSystemHandle&& other) noexcept
    : handle_(std::exchange(other.handle_, nullptr)) {}

UniqueSystemHandle& UniqueSystemHandle::operator=(UniqueSystemHandle&& other) noexcept {
  if (this != &other) {
    reset();
    handle_ = std::exchange(other.handle_, nullptr);
  }
  return *this;
}

void UniqueSystemHandle::reset() {
  if (handle_ != nullptr) CloseHandle(std::exchange(handle_, nullptr));
}

UniqueSystemHandle OpenNowhere() {
  SECURITY_ATTRIBUTES inheritable{sizeof inheritable, nullptr, TRUE};
  return UniqueSystemHandle(CreateFileW(L"NUL", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                        &inheritable, OPEN_EXISTING, 0, nullptr));
}

// Suspended until it belongs to the job, so that what it starts does too.
SystemProcess StartProcess(const std::wstring& executable, const std::wstring& commandLine,
                           HANDLE standardOutput, HANDLE job) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  if (standardOutput != nullptr) startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdOutput = standardOutput;
  PROCESS_INFORMATION process{};
  std::wstring writable = commandLine;
  if (!CreateProcessW(executable.c_str(), writable.data(), nullptr, nullptr,
                      standardOutput != nullptr, CREATE_SUSPENDED, nullptr, nullptr, &startup,
                      &process)) {
    throw std::runtime_error("the program does not start: " + std::to_string(GetLastError()));
  }
  const UniqueSystemHandle thread(process.hThread);
  SystemProcess started{UniqueSystemHandle(process.hProcess), process.dwProcessId};
  if (job != nullptr && !AssignProcessToJobObject(job, started.handle.get())) {
    TerminateProcess(started.handle.get(), kNotWatched);
    throw std::runtime_error("the program cannot be watched");
  }
  ResumeThread(thread.get());
  return started;
}

std::optional<DWORD> AwaitExitCode(HANDLE process, DWORD milliseconds) {
  DWORD code = 0;
  if (WaitForSingleObject(process, milliseconds) != WAIT_OBJECT_0) return std::nullopt;
  return GetExitCodeProcess(process, &code) ? std::optional(code) : std::nullopt;
}

}  // namespace larkspan::testing
