#include "app/Settings.h"

#include <utility>

namespace larkspan {

namespace {

Settings& MutableSettings() {
  static Settings settings;
  return settings;
}

}  // namespace

const Settings& ProcessSettings() { return MutableSettings(); }

void SetProcessSettings(Settings settings) { MutableSettings() = std::move(settings); }

}  // namespace larkspan
