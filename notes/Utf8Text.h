// Translation from the Notes character set to UTF-8.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace larkspan {

// Translates into the buffer, of at most 65,535 bytes, and returns the part that was written; what
// does not fit is left out. Of the text at most 65,535 bytes are read.
std::string_view NotesToUtf8(std::string_view text, std::span<char> buffer);

// The same into at most maxBytes bytes of a text of its own.
std::string NotesToUtf8(std::string_view text, std::size_t maxBytes);

// Makes each byte from 1 to 31 a space.
void ReplaceControlCharacters(std::span<char> utf8);

}  // namespace larkspan
