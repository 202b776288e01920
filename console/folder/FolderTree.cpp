#include "console/folder/FolderTree.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <vector>

namespace larkspan::console {

namespace {

using Visit = std::function<void(const TreeEntry&)>;

// Not every reparse point leads elsewhere: a system also keeps contents apart in them. One of which
// the system does not say what it is may lead anywhere.
bool LeadsElsewhere(const WIN32_FIND_DATAW& found) {
  if ((found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return false;
  return found.dwReserved0 == 0 || IsReparseTagNameSurrogate(found.dwReserved0);
}

TreeEntry::Kind KindOf(const WIN32_FIND_DATAW& found) {
  if (LeadsElsewhere(found)) return TreeEntry::Kind::kLink;
  const bool isFolder = (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  return isFolder ? TreeEntry::Kind::kFolder : TreeEntry::Kind::kFile;
}

// An export is one folder deep. Where a system does not say of a folder that it leads elsewhere,
// one that leads back would have no end.
bool IsTooDeep(std::wstring_view relative) {
  constexpr std::ptrdiff_t kDeepest = 32;
  return std::count(relative.begin(), relative.end(), L'\\') > kDeepest;
}

bool IsItselfOrParent(std::wstring_view name) { return name == L"." || name == L".."; }

// Visits the entries of one folder and adds its subfolders to the list.
bool VisitFolder(const std::wstring& root, const std::wstring& relative, const Visit& visit,
                 std::vector<std::wstring>& subfolders) {
  WIN32_FIND_DATAW found;
  const HANDLE listing =
      FindFirstFileExW((root + relative + L"\\*").c_str(), FindExInfoBasic, &found,
                       FindExSearchNameMatch, nullptr, FIND_FIRST_EX_LARGE_FETCH);
  if (listing == INVALID_HANDLE_VALUE) return GetLastError() == ERROR_FILE_NOT_FOUND;
  do {
    const std::wstring_view name = found.cFileName;
    if (IsItselfOrParent(name)) continue;
    const TreeEntry::Kind kind = KindOf(found);
    visit({relative, name, kind, (std::uint64_t{found.nFileSizeHigh} << 32) | found.nFileSizeLow});
    if (kind == TreeEntry::Kind::kFolder)
      subfolders.push_back(relative + L"\\" + std::wstring(name));
  } while (FindNextFileW(listing, &found));
  const bool isWhole = GetLastError() == ERROR_NO_MORE_FILES;
  FindClose(listing);
  return isWhole;
}

}  // namespace

bool VisitTree(const std::wstring& folder, const Visit& visit) {
  std::vector<std::wstring> left;
  if (!VisitFolder(folder, L"", visit, left)) return false;
  while (!left.empty()) {
    const std::wstring relative = left.back();
    left.pop_back();
    if (IsTooDeep(relative) || !VisitFolder(folder, relative, visit, left))
      visit({relative, L"", TreeEntry::Kind::kUnlisted, 0});
  }
  return true;
}

}  // namespace larkspan::console
