// Translation between the Notes character set, UTF-8 and UTF-16. The Notes character set keeps
// ASCII as it is and writes every other UTF-16 unit as an escape:
//
//   0x20-0x7F, 0x00, 0x09, 0x0A, 0x0D   the character itself
//   other control characters            0x0F, character + 0x20
//   U+0080-U+00FF                       0x01, low byte
//   units whose low byte is zero        0x14, 0xF6, high byte
//   every other unit                    0x14, high byte, low byte
//
// Units 0xF601 to 0xF6FF therefore share their bytes with units whose low byte is zero and are read
// back as those. Input that is none of these gives U+FFFD for its first byte, and reading goes on
// with the next one. Nothing here fails or keeps state; any thread may call.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace larkspan::standin {

// No function splits a character, a surrogate pair included: output ends before the first character
// that would pass the limit, which counts bytes.
inline constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);

// UTF-16 here is bytes, low byte first, of even length. Unpaired surrogates survive between UTF-16
// and the Notes character set, and become U+FFFD in UTF-8.
std::string NotesToUtf16Bytes(std::string_view notes, std::size_t limit);
std::string Utf16BytesToNotes(std::string_view utf16, std::size_t limit);
std::string NotesToUtf8(std::string_view notes, std::size_t limit = kNoLimit);

std::string Utf8ToNotes(std::string_view utf8);
std::u16string NotesToUtf16(std::string_view notes);
std::u16string Utf8ToUtf16(std::string_view utf8);
std::string Utf16ToUtf8(std::u16string_view utf16);

// The longest beginning of a text that ends between two characters and within the limit.
std::string_view FirstWholeCharacters(std::string_view notes, std::size_t limit);

}  // namespace larkspan::standin
