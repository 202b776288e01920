// Numbers as the program's files have them.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace larkspan::console {

// The number that "%08X" gives for it; no value for any other text.
template <typename Character>
std::optional<std::uint32_t> ParseNoteId(std::basic_string_view<Character> text) {
  if (text.size() != 8) return std::nullopt;
  std::uint32_t id = 0;
  for (const Character digit : text) {
    const bool isDecimal = digit >= '0' && digit <= '9';
    if (!isDecimal && (digit < 'A' || digit > 'F')) return std::nullopt;
    id = id * 16 + static_cast<std::uint32_t>(digit - (isDecimal ? '0' : 'A' - 10));
  }
  return id;
}

}  // namespace larkspan::console
