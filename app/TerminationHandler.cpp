// A crashed process can be damaged in any way, so the crash path starts no thread. Two threads wait
// from the beginning: one counts the time of the closing and then ends the process, the other runs
// the closing when the crashed thread cannot. The crashed thread runs it where it can, since the
// library may ask for the thread that it knows. It cannot when its stack is used up, and not when
// it has ended: no handler sees a thread that the library ends, or that has not even the stack left
// to report its fault, and the process would live on with nothing to do.
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
std::atomic<bool> crashed{false};
std::atomic<UINT> crashCode{0};
HANDLE closingLimited = nullptr;
HANDLE closingHandedOver = nullptr;
HANDLE bodyThread = nullptr;

[[noreturn]] void EndProcessAtOnce(UINT code) {
  TerminateProcess(GetCurrentProcess(), code);
  std::abort();  // Never reached; tells the compiler so.
}

// The closing runs once, also when it crashes itself, or when the process crashes after it.
void RunClosingOnce() {
  if (!closingBegun.exchange(true)) registeredClosing();
}

// A second crash ends the process.
void BeginCrash(UINT code) {
  if (crashed.exchange(true)) EndProcessAtOnce(code);
  crashCode = code;
  SetEvent(closingLimited);
}

[[noreturn]] void CloseAndEnd() {
  RunClosingOnce();
  EndProcessAtOnce(crashCode);
}

[[noreturn]] void EndAfterClosingLimit() {
  Sleep(kClosingLimitMilliseconds);
  EndProcessAtOnce(crashCode);
}

DWORD WINAPI LimitClosing(void*) {
  if (WaitForSingleObject(closingLimited, INFINITE) != WAIT_OBJECT_0) return 0;
  EndAfterClosingLimit();
}

DWORD WINAPI CloseForBodyThread(void*) {
  const HANDLE events[] = {closingHandedOver, bodyThread};
  const DWORD event = WaitForMultipleObjects(2, events, FALSE, INFINITE);
  if (event == WAIT_FAILED) return 0;
  if (event == WAIT_OBJECT_0 + 1) BeginCrash(kAbortExitCode);
  CloseAndEnd();
}

LONG WINAPI CloseAfterCrash(EXCEPTION_POINTERS* fault) {
  const DWORD code = fault->ExceptionRecord->ExceptionCode;
  BeginCrash(code);
  if (code != EXCEPTION_STACK_OVERFLOW) CloseAndEnd();
  SetEvent(closingHandedOver);
  EndAfterClosingLimit();
}

// Without this, and the error mode, the C runtime would show its own dialog before it ends a
// windowless program.
extern "C" void EndAfterAbort(int) { EndProcessAtOnce(kAbortExitCode); }

void StartThread(LPTHREAD_START_ROUTINE routine) {
  const HANDLE thread = CreateThread(nullptr, 0, routine, nullptr, 0, nullptr);
  if (thread != nullptr) CloseHandle(thread);
}

// The events, and the handle of the calling thread, stay open for as long as the process lives.
// Without the handle nothing could be told of the thread's end: the thread that waits for it is
// then left out.
void StartWaitingThreads() {
  closingLimited = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  closingHandedOver = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  StartThread(LimitClosing);
  if (DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &bodyThread,
                      SYNCHRONIZE, FALSE, 0)) {
    StartThread(CloseForBodyThread);
  }
}

void InstallCrashHandlers() {
  ULONG stackBytes = kReservedStackBytes;
  SetThreadStackGuarantee(&stackBytes);
  StartWaitingThreads();
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
