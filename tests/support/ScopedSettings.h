// The settings of the process: for the length of a test, and changed within one.
#pragma once

#include <utility>

#include "base/Settings.h"

namespace larkspan {

// Changes the process settings with a function that takes them by reference.
template <typename Change>
void ChangeSettings(Change change) {
  Settings settings = ProcessSettings();
  change(settings);
  SetProcessSettings(std::move(settings));
}

inline void SetArchive(bool archive) {
  ChangeSettings([archive](Settings& settings) { settings.archive = archive; });
}

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
