// The files of a folder, without those of its subfolders, and whether there is one.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace larkspan {

// Hands over the name of each entry that is no folder and matches a pattern of the system ("*.*"
// for all), in no order; none when the folder cannot be listed. The system matches short names too.
void VisitFiles(const std::wstring& folder, std::wstring_view pattern,
                const std::function<void(std::wstring_view name)>& visit);

// The number of entries of the folder that are not folders; 0 when it cannot be listed.
int CountFiles(const std::wstring& folder);

// Whether the path names something that is no folder. Any path that the system takes: the C runtime
// takes the question mark at the beginning of some for a pattern.
bool FileExists(const std::wstring& path);

}  // namespace larkspan
