// Translation between UTF-16 and the Notes character set.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "notes/Status.h"

namespace larkspan {

// Size in bytes of the buffers that hold a path in the Notes character set, the NUL included.
inline constexpr std::size_t kNotesPathCapacity = 1024;

// Translates into at most kNotesPathCapacity - 1 bytes of the Notes character set; what does not
// fit is left out.
std::string WideToNotes(std::wstring_view text);

// A result of our own: the library cannot put a path into the Notes character set.
inline constexpr Status kPathNotTranslated{274};

// The same for a path to open. An empty path names the data directory of this machine, so what the
// library does not translate must not be opened: that is a failure, unless the path is empty.
Status PathToNotes(std::wstring_view path, std::string& notes);

// Translates text in the Notes character set into at most maxBytes bytes of UTF-16, that is half as
// many characters; what does not fit is left out.
std::wstring NotesToWide(std::string_view text, std::size_t maxBytes);

}  // namespace larkspan
