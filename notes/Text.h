// Translation between UTF-16 and the Notes character set.
#pragma once

#include <cstddef>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace larkspan {

// Size in bytes of the buffers that hold a path in the Notes character set, the NUL included.
inline constexpr std::size_t kNotesPathCapacity = 1024;

// The text up to its NUL, or all of it where it has none. The view is one of the given bytes.
inline std::string_view EndedView(std::span<const char> text) {
  return {text.data(), strnlen(text.data(), text.size())};
}
inline std::string EndedText(std::span<const char> text) { return std::string(EndedView(text)); }

// Translates into at most kNotesPathCapacity - 1 bytes of the Notes character set. False when not
// all of the text fits, or when the library translates a text to nothing; what came out is then of
// no use, since it would name something else.
bool WideToNotes(std::wstring_view text, std::string& notes);

// Translates text in the Notes character set into at most maxBytes bytes of UTF-16, that is half as
// many characters; what does not fit is left out.
std::wstring NotesToWide(std::string_view text, std::size_t maxBytes);

// Whether the first eight bytes of two texts in the Notes character set, each of that length at
// least, are equal for the library.
bool FirstEightBytesEqual(std::string_view text, std::string_view other);

}  // namespace larkspan
