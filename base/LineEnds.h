// Line ends of the program's files.
#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace larkspan {

// Appends the text with each line feed as carriage return and line feed, as the C runtime's text
// mode writes it. The search is not the C runtime's, which takes longer than to copy the line.
inline void AppendWithCarriageReturns(std::string_view text, std::string& lines) {
  while (true) {
    const auto lineEnd = std::find(text.begin(), text.end(), '\n');
    const auto length = static_cast<std::size_t>(lineEnd - text.begin());
    lines.append(text.substr(0, length));
    if (lineEnd == text.end()) return;
    lines.append("\r\n");
    text.remove_prefix(length + 1);
  }
}

// The same in a text of its own.
inline std::string WithCarriageReturns(std::string_view text) {
  std::string lines;
  lines.reserve(text.size() + text.size() / 16);
  AppendWithCarriageReturns(text, lines);
  return lines;
}

}  // namespace larkspan
