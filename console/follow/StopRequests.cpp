// The system calls the handler on a thread of its own. After a closed window or a session's end it
// ends this program as soon as the handler returns, so the handler waits until the run has ended.
#include "console/follow/StopRequests.h"

namespace larkspan::console {

namespace {

// A little longer than the run itself gets, and less than the system gives.
constexpr DWORD kLongestWaitMilliseconds = 4500;

std::atomic<StopRequests*> theRequests = nullptr;

}  // namespace

StopRequests::StopRequests()
    : event_(CreateEventW(nullptr, FALSE, FALSE, nullptr)),
      ended_(CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  theRequests = this;
  SetConsoleCtrlHandler(&StopRequests::HandleControl, TRUE);
}

StopRequests::~StopRequests() {
  AllEnded();
  SetConsoleCtrlHandler(&StopRequests::HandleControl, FALSE);
  theRequests = nullptr;
}

void StopRequests::Ask(const char* reason) {
  const char* none = nullptr;
  reason_.compare_exchange_strong(none, reason);
  ++count_;
  SetEvent(event_.get());
}

void StopRequests::AskOnce(const char* reason) {
  const char* none = nullptr;
  if (!reason_.compare_exchange_strong(none, reason)) return;
  ++count_;
  SetEvent(event_.get());
}

void StopRequests::AskCurrent(const char* reason) {
  if (StopRequests* const requests = theRequests) requests->AskOnce(reason);
}

BOOL WINAPI StopRequests::HandleControl(DWORD control) {
  StopRequests* const requests = theRequests;
  if (requests == nullptr) return FALSE;
  const bool sessionEnds = control != CTRL_C_EVENT && control != CTRL_BREAK_EVENT;
  if (sessionEnds) requests->sessionEnds_ = true;
  requests->Ask("user");
  if (sessionEnds) WaitForSingleObject(requests->ended_.get(), kLongestWaitMilliseconds);
  return TRUE;
}

}  // namespace larkspan::console
