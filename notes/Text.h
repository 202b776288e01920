// Translation between UTF-16 and the Notes character set.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace larkspan {

// Size in bytes of the buffers that hold a path in the Notes character set, the NUL included.
inline constexpr std::size_t kNotesPathCapacity = 1024;

// Translates into at most kNotesPathCapacity - 1 bytes of the Notes character set; what does not
// fit is left out.
std::string WideToNotes(std::wstring_view text);

// Translates text in the Notes character set into at most maxBytes bytes of UTF-16, that is half as
// many characters; what does not fit is left out.
std::wstring NotesToWide(std::string_view text, std::size_t maxBytes);

}  // namespace larkspan
