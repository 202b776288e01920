// Pauses that a test sees instead of waiting for them.
#pragma once

#include <chrono>
#include <functional>
#include <utility>
#include <vector>

#include "base/Pause.h"

namespace larkspan {

// Records each pause of the program for as long as it lives, then calls the given function, which
// can do what another program would do meanwhile.
class PauseRecorder {
 public:
  explicit PauseRecorder(std::function<void()> meanwhile = [] {})
      : scoped_([this, meanwhile = std::move(meanwhile)](std::chrono::milliseconds pause) {
          pauses_.push_back(pause.count());
          meanwhile();
        }) {}

  // In milliseconds.
  const std::vector<long long>& pauses() const { return pauses_; }

 private:
  std::vector<long long> pauses_;
  ScopedPauseFunction scoped_;
};

}  // namespace larkspan
