// Hexadecimal numbers in a text file, read by other means than the product's.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace larkspan::fuzz {

// What a stream in text mode gives of the bytes, but for its line ends: it ends at the first
// Control-Z.
std::string_view TextModeContent(std::string_view bytes);

// Whether it is known what the numbers of the text are: runtimes differ in negative ones.
bool HasKnownNumbers(std::string_view text);

// Removes white space and then a number from the front: an optional plus sign, an optional "0x",
// digits. A number of more than 32 bits is 0xFFFFFFFF, an "0x" without digits is 0. Removes nothing
// but the white space where no number stands.
std::optional<std::uint32_t> TakeHexNumber(std::string_view& rest);

// Whether the reading of numbers has reached the end when this is left: also when all that is left
// is the sign of a number.
bool IsEndOfNumbers(std::string_view rest);

}  // namespace larkspan::fuzz
