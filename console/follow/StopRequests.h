// The ways in which a person or a caller asks for the end of a run: Ctrl+C, Ctrl+Break, a window
// that is closed, a session that ends, the end of standard input. One object at a time.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <string>

#include "console/follow/SystemHandle.h"

namespace larkspan::console {

// How long what is at work may take to end by itself when the session or the window goes.
inline constexpr std::uint64_t kSessionEndMilliseconds = 4'000;

class StopRequests {
 public:
  // From now on Ctrl+C does not end this program.
  StopRequests();
  ~StopRequests();
  StopRequests(const StopRequests&) = delete;
  StopRequests& operator=(const StopRequests&) = delete;

  // Set by each request, for whoever waits.
  HANDLE event() const { return event_.get(); }

  // How often the end was asked for: the second time it is to come at once.
  int Count() const { return count_; }

  // What asked first: "user", "input" or "output". Empty: nothing has.
  std::string FirstReason() const { return count_ == 0 ? "" : reason_.load(); }

  // A person wants the end, whatever else has asked for it.
  bool IsByUser() const { return byUser_; }

  // The session or the window goes: what has not ended after four seconds is to be ended.
  bool IsSessionEnding() const { return sessionEnds_; }

  // One more request, from any thread. The reason is a word that stays where it is.
  void Ask(const char* reason);

  // The same, but nothing when the end was asked for before: where a caller ends, its pipes and the
  // Ctrl+C that ended it come together, and mean no haste.
  void AskOnce(const char* reason);

  // AskOnce of the object that there is, if there is one, from any thread.
  static void AskCurrent(const char* reason);

  // Lets a session that ends go on: nothing is at work any more.
  void AllEnded() { SetEvent(ended_.get()); }

 private:
  static BOOL WINAPI HandleControl(DWORD control);

  SystemHandle event_;
  SystemHandle ended_;
  std::atomic<const char*> reason_ = nullptr;
  std::atomic<int> count_ = 0;
  std::atomic<bool> byUser_ = false;
  std::atomic<bool> sessionEnds_ = false;
};

}  // namespace larkspan::console
