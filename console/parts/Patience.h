// Operations on files that another program, such as a scanner of new ones, can hinder for a moment.
#pragma once

#include <chrono>

#include "base/Retry.h"

namespace larkspan::console {

// Calls attempt() until it returns true, five times at the most, a second apart.
template <typename Attempt>
bool Patiently(Attempt attempt) {
  constexpr int kAttempts = 5;
  constexpr std::chrono::milliseconds kPause{1000};
  return RetryWithPause(kAttempts, kPause, attempt, [](int) {});
}

}  // namespace larkspan::console
