// A level's section of the page has one table; the first cell of a row holds one message or several
// between semicolons. A message begins with a capital letter.
#include "tests/torture/DocumentedMessages.h"

#include <cctype>
#include <map>
#include <sstream>
#include <stdexcept>

#include "tests/support/FileBytes.h"

namespace larkspan::torture {

namespace {

constexpr wchar_t kPage[] = L"" LARKSPAN_DOCS_FOLDER "/messages.md";

const std::map<std::string, std::string> kConversions = {
    {"%s", ".*"},        {"%d", "-?[0-9]+"},  {"%u", "[0-9]+"},
    {"%x", "[0-9a-f]+"}, {"%X", "[0-9A-F]+"}, {"%08X", "[0-9A-F]{8}"}};

std::string PatternOf(const std::string& message) {
  std::string pattern = std::regex_replace(message, std::regex(R"([.*+?^${}()|[\]\\])"), R"(\$&)");
  for (const auto& [conversion, expression] : kConversions) {
    for (std::size_t at = pattern.find(conversion); at != std::string::npos;
         at = pattern.find(conversion, at + expression.size())) {
      pattern.replace(at, conversion.size(), expression);
    }
  }
  return pattern;
}

// The level of a heading; empty for one that is none.
std::string LevelOf(const std::string& heading) {
  for (const char* const level : {"ERROR", "WARNING", "DEBUG"}) {
    if (heading.starts_with(std::string("## ") + level + ":")) return level;
  }
  return "";
}

std::vector<std::string> MessagesOf(const std::string& row) {
  std::vector<std::string> messages;
  std::istringstream cell(row.substr(2, row.find(" |", 2) - 2));
  for (std::string piece; std::getline(cell, piece, ';');) {
    const std::string message = piece.substr(piece.find_first_not_of(' '));
    if (std::islower(static_cast<unsigned char>(message.front()))) {
      messages.back() += ";" + piece;
    } else {
      messages.push_back(message);
    }
  }
  return messages;
}

bool IsMessageRow(const std::string& line) {
  return line.starts_with("| ") && !line.starts_with("| message |");
}

}  // namespace

DocumentedMessages::DocumentedMessages() {
  std::istringstream page(ReadBytes(kPage));
  std::string level;
  std::set<std::string> levels;
  for (std::string line; std::getline(page, line);) {
    if (line.starts_with("## ")) level = LevelOf(line);
    if (level.empty() || !IsMessageRow(line)) continue;
    levels.insert(level);
    for (const std::string& message : MessagesOf(line)) {
      patterns_.emplace_back("#" + level + "# - " + PatternOf(message));
    }
  }
  if (levels.size() != 3) throw std::runtime_error("the page of messages lacks a table");
}

bool DocumentedMessages::Contains(const std::string& line) {
  if (known_.contains(line)) return true;
  for (const std::regex& pattern : patterns_) {
    if (!std::regex_match(line, pattern)) continue;
    known_.insert(line);
    return true;
  }
  return false;
}

}  // namespace larkspan::torture
