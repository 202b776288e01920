// A crashed process can be damaged in any way, so the crash path starts no thread. Two threads wait
// from the beginning: one counts the time of the closing and then ends the process, the other runs
// the closing when the body's thread cannot. The body's thread runs it where it can, since the
// library may ask for the thread that it knows. It cannot when its stack is used up, and not when
// it has ended: no handler sees a thread that the library ends, or that has not even the stack left
// to report its fault, and the process would live on with nothing to do. Nor can it when another
// thread has crashed. It is then stopped before the closing: going on while the library is being
// ended, it would take healthy notes for failed ones, and mark another note than that at which the
// crash came.
#include "app/TerminationHandler.h"

#include <windows.h>

#include <atomic>
#include <cstdlib>

namespace larkspan {

namespace {

constexpr DWORD kClosingLimitMilliseconds = 10000;
constexpr ULONG kReservedStackBytes = 64 * 1024;

// What a throw of the compiler raises by which Windows programs, the library too, are mostly built.
// The handlers of this program's own compiler let it pass.
constexpr DWORD kForeignException = 0xE06D7363;

TerminationHandler registered{};
std::atomic<bool> closingBegun{false};
std::atomic<DWORD> closingThreadId{0};
std::atomic<UINT> crashCode{0};  // Of the first crash; 0: there was none.
HANDLE closingLimited = nullptr;
HANDLE closingHandedOver = nullptr;
HANDLE bodyThread = nullptr;
DWORD bodyThreadId = 0;

[[noreturn]] void EndProcessAtOnce(UINT code) {
  TerminateProcess(GetCurrentProcess(), code);
  std::abort();  // Never reached; tells the compiler so.
}

// The closing runs once, also when it crashes itself, or when the process crashes after it.
void RunClosingOnce(BodyEnd end) {
  if (closingBegun.exchange(true)) return;
  closingThreadId = GetCurrentThreadId();
  registered.closing(end);
}

// The first crash counts, and has its time for the closing. Its code is what marks it, since a
// thread without stack can end between any two steps here.
bool BeginCrash(UINT code) {
  UINT none = 0;
  if (!crashCode.compare_exchange_strong(none, code)) return false;
  SetEvent(closingLimited);
  return true;
}

[[noreturn]] void CloseAndEnd() {
  RunClosingOnce(crashCode == kForeignException ? BodyEnd::kException : BodyEnd::kCrash);
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

// The body may hold a lock that the closing needs, of the library, the heap or the run log. The
// closing then waits until its time is over, and what it had to say is lost. A thread is suspended
// some time after the system is asked for it; reading its registers waits for that.
void StopBodyThread() {
  SuspendThread(bodyThread);
  CONTEXT registers{};
  registers.ContextFlags = CONTEXT_CONTROL;
  GetThreadContext(bodyThread, &registers);
}

// A thread without stack can still begin its crash and then end before it hands the closing over.
DWORD WINAPI CloseForOtherThread(void*) {
  const HANDLE events[] = {closingHandedOver, bodyThread};
  const DWORD event = WaitForMultipleObjects(2, events, FALSE, INFINITE);
  if (event == WAIT_FAILED) return 0;
  if (event == WAIT_OBJECT_0) StopBodyThread();
  if (event == WAIT_OBJECT_0 + 1) {
    BeginCrash(registered.endedThreadCode);
    SetEvent(closingLimited);
  }
  CloseAndEnd();
}

// Takes little stack, since there may be little left. Where the library is damaged several threads
// can crash at once: those that come later wait for the closing like the first one.
LONG WINAPI CloseAfterCrash(EXCEPTION_POINTERS* fault) {
  const DWORD code = fault->ExceptionRecord->ExceptionCode;
  if (GetCurrentThreadId() == closingThreadId) EndProcessAtOnce(code);
  if (!BeginCrash(code)) EndAfterClosingLimit();
  if (GetCurrentThreadId() == bodyThreadId && code != EXCEPTION_STACK_OVERFLOW) CloseAndEnd();
  SetEvent(closingHandedOver);
  EndAfterClosingLimit();
}

void StartThread(LPTHREAD_START_ROUTINE routine) {
  const HANDLE thread = CreateThread(nullptr, 0, routine, nullptr, 0, nullptr);
  if (thread != nullptr) CloseHandle(thread);
}

// The events, and the handle of the calling thread, stay open for as long as the process lives.
// Without the handle nothing could be told of the thread's end, nor could it be stopped: the thread
// that waits for its end is then left out.
void StartWaitingThreads() {
  constexpr DWORD kRights = SYNCHRONIZE | THREAD_SUSPEND_RESUME | THREAD_GET_CONTEXT;
  bodyThreadId = GetCurrentThreadId();
  closingLimited = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  closingHandedOver = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  StartThread(LimitClosing);
  if (DuplicateHandle(GetCurrentProcess(), GetCurrentThread(), GetCurrentProcess(), &bodyThread,
                      kRights, FALSE, 0)) {
    StartThread(CloseForOtherThread);
  }
}

void InstallCrashHandlers() {
  ULONG stackBytes = kReservedStackBytes;
  SetThreadStackGuarantee(&stackBytes);
  StartWaitingThreads();
  SetUnhandledExceptionFilter(CloseAfterCrash);
}

}  // namespace

void RunWithTerminationHandler(const std::function<void()>& body,
                               const TerminationHandler& handler) {
  registered = handler;
  closingBegun = false;
  InstallCrashHandlers();
  try {
    body();
  } catch (...) {
    RunClosingOnce(BodyEnd::kException);
    throw;
  }
  RunClosingOnce(BodyEnd::kReturn);
}

}  // namespace larkspan
