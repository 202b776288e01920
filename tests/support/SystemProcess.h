// Processes of the system, as tests start them and wait for them.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

namespace larkspan::testing {

// Owns one system handle.
class UniqueSystemHandle {
 public:
  UniqueSystemHandle() = default;
  explicit UniqueSystemHandle(HANDLE handle) : handle_(handle) {}
  ~UniqueSystemHandle() { reset(); }
  UniqueSystemHandle(UniqueSystemHandle&& other) noexcept;
  UniqueSystemHandle& operator=(UniqueSystemHandle&& other) noexcept;

  HANDLE get() const { return handle_; }
  void reset();

 private:
  HANDLE handle_ = nullptr;
};

struct SystemProcess {
  UniqueSystemHandle handle;  // Closing it leaves the process as it is.
  DWORD id = 0;
};

// A standard output that keeps nothing.
UniqueSystemHandle OpenNowhere();

// Starts the executable file with exactly this command line. With a standard output, it inherits
// that and every other inheritable handle; with a job, it and all that it starts belong to the job
// from their first moment on. Throws when it cannot be started so.
SystemProcess StartProcess(const std::wstring& executable, const std::wstring& commandLine,
                           HANDLE standardOutput, HANDLE job);

// Waits so long for the end of a process. None when it goes on.
std::optional<DWORD> AwaitExitCode(HANDLE process, DWORD milliseconds);

}  // namespace larkspan::testing
