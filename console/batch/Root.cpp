#include "console/batch/Root.h"

#include <windows.h>

#include <filesystem>

#include "console/batch/BatchFolders.h"
#include "console/follow/OutputFolder.h"

namespace larkspan::console {

namespace {

constexpr wchar_t kLockFile[] = L"\\batch.lock";

bool LiesInExport(const std::filesystem::path& root) {
  for (std::filesystem::path folder = root;; folder = folder.parent_path()) {
    if (HoldsExport(folder.wstring())) return true;
    if (folder == folder.parent_path()) return false;
  }
}

}  // namespace

std::string MakeRoot(const std::wstring& root) {
  if (LiesInExport(root)) return "lies in the folder of an export, which is to stay as it is";
  std::error_code error;
  std::filesystem::create_directories(root, error);
  return FolderExists(root) ? "" : "cannot be made";
}

RootLock::RootLock(const std::wstring& root)
    : file_(CreateFileW((root + kLockFile).c_str(), GENERIC_WRITE | DELETE, 0, nullptr, OPEN_ALWAYS,
                        FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE, nullptr)) {}

}  // namespace larkspan::console
