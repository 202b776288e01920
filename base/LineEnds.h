// Line ends of the program's files.
#pragma once

#include <string>
#include <string_view>

namespace larkspan {

// The text with each line feed as carriage return and line feed, as the C runtime's text mode
// writes it.
inline std::string WithCarriageReturns(std::string_view text) {
  std::string bytes;
  bytes.reserve(text.size() + text.size() / 16);
  for (const char byte : text) {
    if (byte == '\n') bytes.push_back('\r');
    bytes.push_back(byte);
  }
  return bytes;
}

}  // namespace larkspan
