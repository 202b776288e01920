#include "console/doctor/LibrarySearch.h"

#include <windows.h>

#include <utility>
#include <vector>

#include "base/FolderFiles.h"

namespace larkspan::console {

namespace {

// What the system's calls of this form give: the size that they need where there is too little.
template <typename Call>
std::wstring TextOf(const Call& call) {
  std::wstring text(call(nullptr, 0), L'\0');
  text.resize(text.empty() ? 0 : call(text.data(), static_cast<DWORD>(text.size())));
  return text;
}

// That of 32-bit programs where this one is a 64-bit program; none where there are no two of them.
std::wstring SystemFolder(int programBits) {
  const bool isForeign = programBits == 32 && sizeof(void*) == 8;
  return TextOf([isForeign](wchar_t* text, DWORD size) {
    return isForeign ? GetSystemWow64DirectoryW(text, size) : GetSystemDirectoryW(text, size);
  });
}

std::wstring WindowsFolder() { return TextOf(GetSystemWindowsDirectoryW); }

std::wstring CurrentFolder() {
  return TextOf([](wchar_t* text, DWORD size) { return GetCurrentDirectoryW(size, text); });
}

std::optional<FoundLibrary> FindAlongPath(const std::wstring& name) {
  const std::wstring path = TextOf(
      [](wchar_t* text, DWORD size) { return GetEnvironmentVariableW(L"PATH", text, size); });
  if (path.empty()) return std::nullopt;
  const std::wstring file = TextOf([&](wchar_t* text, DWORD size) {
    return SearchPathW(path.c_str(), name.c_str(), nullptr, size, text, nullptr);
  });
  if (file.empty()) return std::nullopt;
  return FoundLibrary{file, LibraryPlace::kPath};
}

}  // namespace

std::optional<FoundLibrary> FindLibrary(const std::wstring& programFolder, int programBits,
                                        const std::wstring& name) {
  const std::vector<std::pair<std::wstring, LibraryPlace>> folders = {
      {programFolder, LibraryPlace::kProgramFolder},
      {SystemFolder(programBits), LibraryPlace::kSystemFolder},
      {WindowsFolder() + L"\\system", LibraryPlace::kSystemFolder},
      {WindowsFolder(), LibraryPlace::kSystemFolder},
      {CurrentFolder(), LibraryPlace::kCurrentFolder},
  };
  for (const auto& [folder, place] : folders) {
    const std::wstring file = folder + (folder.ends_with(L'\\') ? L"" : L"\\") + name;
    if (!folder.empty() && FileExists(file)) return FoundLibrary{file, place};
  }
  return FindAlongPath(name);
}

const char* PlaceText(LibraryPlace place) {
  switch (place) {
    case LibraryPlace::kProgramFolder:
      return "in the folder of larkspan.exe";
    case LibraryPlace::kSystemFolder:
      return "in a folder of Windows";
    case LibraryPlace::kCurrentFolder:
      return "in the current folder";
    case LibraryPlace::kPath:
      break;
  }
  return "along the PATH";
}

}  // namespace larkspan::console
