// A crashed process can be damaged in any way, so nothing that the crash path needs is made there:
// the thread that ends a hanging closing waits from the beginning, and the main thread keeps stack
// in reserve for the closing after a stack overflow.
#include "app/TerminationHandler.h"

#include <windows.h>

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace larkspan {

namespace {

constexpr DWORD kClosingLimitMilliseconds = 10000;
constexpr ULONG kReservedStackBytes = 128 * 1024;
constexpr UINT kAbortExitCode = 3;

void (*crashClosing)() = nullptr;
HANDLE crashHappened = nullptr;
std::atomic<bool> crashed{false};
std::atomic<DWORD> crashCode{0};

[[noreturn]] void EndProcessAtOnce(UINT code) {
  TerminateProcess(GetCurrentProcess(), code);
  std::abort();  // Never reached; tells the compiler so.
}

DWORD WINAPI EndHangingClosing(void*) {
  WaitForSingleObject(crashHappened, INFINITE);
  Sleep(kClosingLimitMilliseconds);
  EndProcessAtOnce(crashCode);
}

LONG WINAPI CloseAfterCrash(EXCEPTION_POINTERS* fault) {
  const DWORD code = fault->ExceptionRecord->ExceptionCode;
  if (crashed.exchange(true)) EndProcessAtOnce(code);
  crashCode = code;
  SetEvent(crashHappened);
  crashClosing();
  EndProcessAtOnce(code);
}

// Without this the C runtime would show its own dialog before it ends a windowless program.
extern "C" void EndAfterAbort(int) { EndProcessAtOnce(kAbortExitCode); }

void InstallCrashHandlers() {
  ULONG stackBytes = kReservedStackBytes;
  SetThreadStackGuarantee(&stackBytes);
  crashHappened = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  const HANDLE thread = CreateThread(nullptr, 0, EndHangingClosing, nullptr, 0, nullptr);
  if (thread != nullptr) CloseHandle(thread);
  SetUnhandledExceptionFilter(CloseAfterCrash);
  std::signal(SIGABRT, EndAfterAbort);
}

}  // namespace

void RunWithTerminationHandler(const std::function<void()>& body, void (*closing)()) {
  crashClosing = closing;
  InstallCrashHandlers();
  body();
  closing();
}

}  // namespace larkspan
