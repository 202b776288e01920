#include "base/FolderFiles.h"

#include <windows.h>

namespace larkspan {

void VisitFiles(const std::wstring& folder, std::wstring_view pattern,
                const std::function<void(std::wstring_view name)>& visit) {
  WIN32_FIND_DATAW entry;
  const HANDLE listing = FindFirstFileW((folder + L"\\" + std::wstring(pattern)).c_str(), &entry);
  if (listing == INVALID_HANDLE_VALUE) return;
  do {
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) visit(entry.cFileName);
  } while (FindNextFileW(listing, &entry) != 0);
  FindClose(listing);
}

int CountFiles(const std::wstring& folder) {
  int files = 0;
  VisitFiles(folder, L"*.*", [&](std::wstring_view) { ++files; });
  return files;
}

bool FileExists(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
}

}  // namespace larkspan
