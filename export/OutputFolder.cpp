#include "export/OutputFolder.h"

#include "base/FileSystem.h"
#include "base/OutputPaths.h"
#include "base/Settings.h"

namespace larkspan {

void CreateOutputSubfolders() {
  if (!ProcessSettings().archive) return;
  for (const wchar_t* subfolder : output::kSubfolders) {
    file_system::CreateFolder(InOutputFolder(subfolder));
  }
}

}  // namespace larkspan
