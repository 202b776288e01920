#include "export/OutputFolder.h"

#include "app/Settings.h"
#include "base/FileSystem.h"
#include "base/OutputPaths.h"

namespace larkspan {

void CreateOutputSubfolders() {
  if (!ProcessSettings().archive) return;
  for (const wchar_t* subfolder : output::kSubfolders) {
    file_system::CreateFolder(InOutputFolder(subfolder));
  }
}

}  // namespace larkspan
