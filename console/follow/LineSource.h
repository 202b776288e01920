// Lines that another process writes into a pipe, or a person into a terminal. They are read on a
// thread of its own: a read waits for as long as the writer does, and a writer must not wait for
// whoever takes the lines.
#pragma once

#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "console/follow/SystemHandle.h"

namespace larkspan::console {

class LineSource {
 public:
  // Reads from now on, until the end.
  explicit LineSource(SystemHandle input);

  // Of this program's standard input.
  static LineSource StandardInput();

  // Set when there are new lines.
  HANDLE event() const { return shared_->event.get(); }

  // The lines that nobody has taken yet, without their ends.
  std::vector<std::string> Take();

  // The next line; waits for it. What stands behind the last line end is a line here alone: what a
  // writer was ended at says nothing. No value at the end.
  std::optional<std::string> NextLine();

  // The next line, if there is one.
  std::optional<std::string> TakeOne();

  // All is read and taken.
  bool HasEnded() const;

  // Waits until all is read, or so long.
  void AwaitEnd(std::chrono::milliseconds longest);

  // Calls it once, from any thread, when all is read or nothing more can be read.
  void CallAtEnd(std::function<void()> onEnd);

 private:
  // The thread outlives this object when the writer does.
  struct Shared {
    SystemHandle input;
    SystemHandle event{CreateEventW(nullptr, FALSE, FALSE, nullptr)};
    SystemHandle endEvent{CreateEventW(nullptr, TRUE, FALSE, nullptr)};
    std::mutex mutex;
    std::condition_variable changed;
    std::deque<std::string> lines;
    std::string rest;  // Behind the last line end, once all is read.
    bool ended = false;
    std::function<void()> onEnd;
  };

  static void Read(const std::shared_ptr<Shared>& shared);

  std::shared_ptr<Shared> shared_;
};

}  // namespace larkspan::console
