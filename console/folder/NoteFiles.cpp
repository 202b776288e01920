#include "console/folder/NoteFiles.h"

#include <algorithm>
#include <array>

#include "base/FolderFiles.h"
#include "base/OutputPaths.h"

namespace larkspan::console {

namespace {

constexpr std::array kFolders = {output::kDataFolder, output::kDesignFolder,
                                 output::kProfileFolder};

}  // namespace

bool HasNoteFile(const std::wstring& folder, std::uint32_t note) {
  return std::any_of(kFolders.begin(), kFolders.end(), [&](const wchar_t* name) {
    return FileExists(output::Join(folder, output::NoteFile(name, note)));
  });
}

bool HasAnyNoteFile(const std::wstring& folder) {
  return std::any_of(kFolders.begin(), kFolders.end(), [&](const wchar_t* name) {
    return CountFiles(output::Join(folder, name)) > 0;
  });
}

}  // namespace larkspan::console
