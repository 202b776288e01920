// Retrying a file operation that another program's short lock can make fail.
#pragma once

#include <chrono>

#include "base/Pause.h"

namespace larkspan {

// Calls attempt() until it returns true, at most `attempts` times. After each failed attempt but
// the last it calls onRetry(k) with the number of attempts made so far (from 1) and pauses.
// Returns whether an attempt succeeded.
template <typename Attempt, typename OnRetry>
bool RetryWithPause(int attempts, std::chrono::milliseconds pause, Attempt attempt,
                    OnRetry onRetry) {
  for (int made = 1;; ++made) {
    if (attempt()) return true;
    if (made == attempts) return false;
    onRetry(made);
    Pause(pause);
  }
}

}  // namespace larkspan
