// The settings of the process, for the length of a test.
#pragma once

#include <utility>

#include "base/Settings.h"

namespace larkspan {

// Sets the process settings, and puts the earlier ones back at the end.
class ScopedSettings {
 public:
  explicit ScopedSettings(Settings settings) : previous_(ProcessSettings()) {
    SetProcessSettings(std::move(settings));
  }
  ~ScopedSettings() { SetProcessSettings(std::move(previous_)); }
  ScopedSettings(const ScopedSettings&) = delete;
  ScopedSettings& operator=(const ScopedSettings&) = delete;

 private:
  Settings previous_;
};

}  // namespace larkspan
