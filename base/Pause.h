// The one place where the program waits on purpose. Tests put another function in its place, so
// that no test sleeps for seconds.
#pragma once

#include <chrono>
#include <functional>

namespace larkspan {

using PauseFunction = std::function<void(std::chrono::milliseconds)>;

// Waits for the given time, or hands it to the function that stands in for waiting. Any thread may
// call.
void Pause(std::chrono::milliseconds duration);

// Puts a function in the place of waiting for as long as the object lives. Main thread only.
class ScopedPauseFunction {
 public:
  explicit ScopedPauseFunction(PauseFunction function);
  ~ScopedPauseFunction();
  ScopedPauseFunction(const ScopedPauseFunction&) = delete;
  ScopedPauseFunction& operator=(const ScopedPauseFunction&) = delete;

 private:
  PauseFunction previous_;
};

}  // namespace larkspan
