// What lies in an output folder, and in the folders below it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace larkspan::console {

struct TreeEntry {
  // kLink: leads elsewhere, and is not followed. kUnlisted: a folder that cannot be listed.
  enum class Kind { kFile, kFolder, kLink, kUnlisted };

  std::wstring_view folder;  // "" for the output folder itself, then "\data" or "\a\b".
  std::wstring_view name;
  Kind kind = Kind::kFile;
  std::uint64_t size = 0;
};

// Hands over each entry, those of a folder before those of its subfolders. False when the folder
// itself cannot be listed.
bool VisitTree(const std::wstring& folder, const std::function<void(const TreeEntry&)>& visit);

}  // namespace larkspan::console
