// Counting the files of a folder.
#pragma once

#include <string>

namespace larkspan {

// The number of entries of the folder that are not folders; 0 when it cannot be listed.
int CountFiles(const std::wstring& folder);

}  // namespace larkspan
