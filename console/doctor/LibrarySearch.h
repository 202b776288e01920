// Which file Windows takes for a library that a program is linked with: it looks in the program's
// folder, in its own folders, in the current folder, then along the PATH.
#pragma once

#include <optional>
#include <string>

namespace larkspan::console {

enum class LibraryPlace { kProgramFolder, kSystemFolder, kCurrentFolder, kPath };

struct FoundLibrary {
  std::wstring file;
  LibraryPlace place = LibraryPlace::kProgramFolder;
};

// For a program of that word size, which lies in that folder and is started by this one.
std::optional<FoundLibrary> FindLibrary(const std::wstring& programFolder, int programBits,
                                        const std::wstring& name);

// "in the folder of larkspan.exe", "along the PATH".
const char* PlaceText(LibraryPlace place);

}  // namespace larkspan::console
