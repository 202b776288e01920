#include "export/OutputFolder.h"

#include <windows.h>

#include "app/Settings.h"
#include "base/OutputPaths.h"

namespace larkspan {

void CreateOutputSubfolders() {
  const Settings& settings = ProcessSettings();
  if (!settings.archive) return;
  for (const wchar_t* subfolder : output::kSubfolders) {
    CreateDirectoryW(output::Join(settings.outputFolder, subfolder).c_str(), nullptr);
  }
}

}  // namespace larkspan
