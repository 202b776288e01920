#include "tests/support/RunTexts.h"

#include <algorithm>
#include <cstdio>

#include "tests/support/FileBytes.h"

namespace larkspan::testing {

Lines LinesIn(const std::string& text) {
  const std::size_t end = text.rfind("\r\n");
  const std::size_t wholeBytes = end == std::string::npos ? 0 : end + 2;
  Lines lines = SplitLines(text.substr(0, wholeBytes));
  if (wholeBytes != text.size()) lines.push_back(kTorn + text.substr(wholeBytes));
  return lines;
}

Lines LinesOf(const OutputTree& tree, const std::string& name) {
  const auto found = tree.find(name);
  return found == tree.end() ? Lines() : LinesIn(found->second);
}

std::string_view MessageOf(std::string_view line) {
  constexpr std::string_view kBehindTheLevel = " - ";
  const std::size_t level = line.find(kBehindTheLevel);
  return level == std::string_view::npos ? "" : line.substr(level + kBehindTheLevel.size());
}

int CountMessages(const Lines& log, std::string_view beginning) {
  return static_cast<int>(std::count_if(log.begin(), log.end(), [&](const std::string& line) {
    return MessageOf(line).starts_with(beginning);
  }));
}

std::string NoteIdText(std::uint32_t noteId) {
  char text[9];
  std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(noteId));
  return text;
}

}  // namespace larkspan::testing
