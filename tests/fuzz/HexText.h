// Hexadecimal numbers in a text file, read by other means than the product's.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace larkspan::fuzz {

// Whether it is known what the numbers of the text are: runtimes differ in negative ones.
bool HasKnownNumbers(std::string_view text);

// Removes white space and then a number from the front: an optional plus sign, an optional "0x",
// digits. A number too long for the runtime's unsigned long, of 32 bits on Windows and of 64
// elsewhere, is its largest, and the low 32 bits are taken; an "0x" without digits is 0. Removes
// nothing but the white space where no number stands.
std::optional<std::uint32_t> TakeHexNumber(std::string_view& rest);

// Whether the reading of numbers has reached the end when this is left: also when all that is left
// is the sign of a number.
bool IsEndOfNumbers(std::string_view rest);

}  // namespace larkspan::fuzz
