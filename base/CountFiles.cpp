#include "base/CountFiles.h"

#include <windows.h>

namespace larkspan {

int CountFiles(const std::wstring& folder) {
  WIN32_FIND_DATAW entry;
  const HANDLE listing = FindFirstFileW((folder + L"\\*.*").c_str(), &entry);
  if (listing == INVALID_HANDLE_VALUE) return 0;
  int files = 0;
  do {
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) ++files;
  } while (FindNextFileW(listing, &entry) != 0);
  FindClose(listing);
  return files;
}

}  // namespace larkspan
