// How long the path of an output folder may be.
#pragma once

#include <cstddef>
#include <string>

namespace larkspan {

// Whether this process may use paths of more than 260 characters. Older systems cannot tell, since
// none may there.
bool AreLongPathsEnabled();

// The characters of the longest name that a file of an export has below its folder.
std::size_t LongestOutputName(bool archive);

// Whether every file of an export there is within the reach of the system.
bool IsWithinPathLimit(const std::wstring& folder, bool archive);

}  // namespace larkspan
