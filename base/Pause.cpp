#include "base/Pause.h"

#include <windows.h>

#include <utility>

namespace larkspan {

namespace {

PauseFunction& CurrentPauseFunction() {
  static PauseFunction function = [](std::chrono::milliseconds duration) {
    Sleep(static_cast<DWORD>(duration.count()));
  };
  return function;
}

}  // namespace

void Pause(std::chrono::milliseconds duration) { CurrentPauseFunction()(duration); }

ScopedPauseFunction::ScopedPauseFunction(PauseFunction function)
    : previous_(std::exchange(CurrentPauseFunction(), std::move(function))) {}

ScopedPauseFunction::~ScopedPauseFunction() { CurrentPauseFunction() = std::move(previous_); }

}  // namespace larkspan
