// A run that is asked to stop.
#pragma once

#include <cstdint>

#include "report/Progress.h"
#include "tests/support/ScopedSettings.h"

namespace larkspan {

// Asks this process to stop, as the end of its pipe does; the settings keep theirs.
inline void RequestStop() {
  constexpr std::int64_t kAnyPipe = 44;
  Settings settings = ProcessSettings();
  settings.progressPipe = kAnyPipe;
  const ScopedSettings scoped(settings);
  MonitorPipe([](std::int64_t) {});
}

}  // namespace larkspan
