// Numbers of a test program's command line.
#pragma once

#include <charconv>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <system_error>

namespace larkspan::testing {

// The number that the whole text is, in decimal digits. Throws std::invalid_argument when it is
// none, or one of more than 64 bits.
inline std::uint64_t WholeNumber(const std::string& text) {
  std::uint64_t number = 0;
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || behind != end) throw std::invalid_argument("no number: " + text);
  return number;
}

}  // namespace larkspan::testing
