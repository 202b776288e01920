// A crashed process can be damaged in any way, so the crash path starts no thread. From the
// beginning a second thread waits for a crash. After a crash one of the two threads, the
// crashed one or the waiting one, runs the closing while the other counts the time; whichever is
// ready first ends the process. The crashed thread runs the closing, since the library may ask for
// the thread that it knows; only when its stack is used up does the waiting thread do it.
#include "app/TerminationHandler.h"

#include <windows.h>

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace larkspan {

namespace {

constexpr DWORD kClosingLimitMilliseconds = 10000;
constexpr ULONG kReservedStackBytes = 64 * 1024;
constexpr UINT kAbortExitCode = 3;

void (*registeredClosing)() = nullptr;
std::atomic<bool> closingBegun{false};
HANDLE crashHappened = nullptr;
std::atomic<bool> crashed{false};
std::atomic<DWORD> crashCode{0};

[[noreturn]] void EndProcessAtOnce(UINT code) {
  TerminateProcess(GetCurrentProcess(), code);
  std::abort();  // Never reached; tells the compiler so.
}

// The closing runs once, also when it crashes itself, or when the process crashes after it.
void RunClosingOnce() {
  if (!closingBegun.exchange(true)) registeredClosing();
}

bool StackIsUsedUp() { return crashCode == EXCEPTION_STACK_OVERFLOW; }

[[noreturn]] void CloseOrCountTime(bool close) {
  if (close) {
    RunClosingOnce();
  } else {
    Sleep(kClosingLimitMilliseconds);
  }
  EndProcessAtOnce(crashCode);
}

DWORD WINAPI WaitForCrash(void*) {
  if (WaitForSingleObject(crashHappened, INFINITE) != WAIT_OBJECT_0) return 0;
  CloseOrCountTime(StackIsUsedUp());
}

LONG WINAPI CloseAfterCrash(EXCEPTION_POINTERS* fault) {
  const DWORD code = fault->ExceptionRecord->ExceptionCode;
  if (crashed.exchange(true)) EndProcessAtOnce(code);
  crashCode = code;
  SetEvent(crashHappened);
  CloseOrCountTime(!StackIsUsedUp());
}

// Without this, and the error mode, the C runtime would show its own dialog before it ends a
// windowless program.
extern "C" void EndAfterAbort(int) { EndProcessAtOnce(kAbortExitCode); }

void InstallCrashHandlers() {
  ULONG stackBytes = kReservedStackBytes;
  SetThreadStackGuarantee(&stackBytes);
  crashHappened = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  const HANDLE thread = CreateThread(nullptr, 0, WaitForCrash, nullptr, 0, nullptr);
  if (thread != nullptr) CloseHandle(thread);
  SetUnhandledExceptionFilter(CloseAfterCrash);
  _set_error_mode(_OUT_TO_STDERR);
  std::signal(SIGABRT, EndAfterAbort);
}

}  // namespace

void RunWithTerminationHandler(const std::function<void()>& body, void (*closing)()) {
  registeredClosing = closing;
  closingBegun = false;
  InstallCrashHandlers();
  try {
    body();
  } catch (...) {
    RunClosingOnce();
    throw;
  }
  RunClosingOnce();
}

}  // namespace larkspan
