#include "export/OutputFolder.h"

#include <windows.h>

#include "app/Settings.h"
#include "base/OutputPaths.h"

namespace larkspan {

void CreateOutputSubfolders() {
  if (!ProcessSettings().archive) return;
  for (const wchar_t* subfolder : output::kSubfolders) {
    CreateDirectoryW(InOutputFolder(subfolder).c_str(), nullptr);
  }
}

}  // namespace larkspan
