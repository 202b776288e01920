#include "base/Settings.h"

#include "base/OutputPaths.h"
#include "base/Wipe.h"

namespace larkspan {

namespace {

// Never destroyed: the thread that watches the stop pipe may still read the settings while the
// process exits.
Settings& MutableSettings() {
  static Settings& settings = *new Settings;
  return settings;
}

}  // namespace

const Settings& ProcessSettings() { return MutableSettings(); }

// Copied: where a longer text is moved a short one stays.
void SetProcessSettings(Settings&& settings) {
  MutableSettings() = settings;
  Wipe(settings.idPassword);
}

void WipePassword() { Wipe(MutableSettings().idPassword); }

std::wstring InOutputFolder(std::wstring_view name) {
  return output::Join(ProcessSettings().outputFolder, name);
}

}  // namespace larkspan
