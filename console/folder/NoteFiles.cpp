#include "console/folder/NoteFiles.h"

#include <algorithm>
#include <array>

#include "base/FolderFiles.h"
#include "base/OutputPaths.h"

namespace larkspan::console {

bool HasNoteFile(const std::wstring& folder, std::uint32_t note) {
  constexpr std::array kFolders = {output::kDataFolder, output::kDesignFolder,
                                   output::kProfileFolder};
  return std::any_of(kFolders.begin(), kFolders.end(), [&](const wchar_t* name) {
    return FileExists(output::Join(folder, output::NoteFile(name, note)));
  });
}

}  // namespace larkspan::console
