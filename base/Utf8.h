// Conversion of wide text into the UTF-8 of the program's files and streams.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace larkspan {

// Size of a line buffer in bytes, its terminating NUL included.
inline constexpr std::size_t kUtf8LineCapacity = 1024;

// Converts UTF-16 to UTF-8. A lone surrogate becomes U+FFFD.
std::string WideToUtf8(std::wstring_view text);

// Converts a line into at most kUtf8LineCapacity - 1 bytes. A longer line is cut between two
// characters; a line end at its end survives the cut.
std::string WideLineToUtf8(std::wstring_view line);

}  // namespace larkspan
