// The sums of many files, several files at a time.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/bag/Digests.h"
#include "console/folder/FileProgress.h"

namespace larkspan::console {

struct FileSum {
  std::wstring_view name;  // Begins with a backslash. Who asks keeps it.
  DigestKinds kinds;
  std::optional<Digests> digests;  // No value: the file cannot be read.
};

// Fills in the digests of files of the folder. False when it was broken off. Throws
// std::runtime_error when the system cannot calculate them.
bool CalculateSums(const std::wstring& folder, const FileProgress& progress,
                   std::vector<FileSum>& files);

}  // namespace larkspan::console
