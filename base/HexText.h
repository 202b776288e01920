// Numbers in hexadecimal where formatting each would show: printf takes longer than all else that
// is done for a short line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace larkspan {

// The number as "%08X" writes it.
inline std::string EightHexDigits(std::uint32_t number) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  constexpr int kBitsOfADigit = 4;
  std::string text(8, '0');
  for (std::size_t i = text.size(); number != 0; number >>= kBitsOfADigit) {
    text[--i] = kDigits[number % kDigits.size()];
  }
  return text;
}

}  // namespace larkspan
