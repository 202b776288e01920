#include "tests/torture/XmlLoss.h"

#include <regex>

#include "tests/support/RunTexts.h"
#include "tests/torture/Sequence.h"
#include "tests/torture/XmlWholeness.h"

namespace larkspan::torture {

namespace {

// The tags, their attributes, and what stands between two tags.
Lines PiecesOf(const std::string& line) {
  static const std::regex piece(R"([^\s=<>]+="[^"]*"|</?[^\s<>/]+|>|[^<>]+(?=<))");
  Lines pieces;
  for (std::sregex_iterator each(line.begin(), line.end(), piece), end; each != end; ++each) {
    pieces.push_back(each->str());
  }
  return pieces;
}

// The same, or an attribute without its value.
bool IsPieceOf(const std::string& piece, const std::string& other) {
  return piece == other ||
         (piece.ends_with("=\"\"") && other.starts_with(piece.substr(0, piece.size() - 1)));
}

// An element that has lost all that stood in it is one tag.
bool IsPartOf(std::string line, const std::string& other) {
  if (line == other) return true;
  if (line.ends_with("/>")) line.erase(line.size() - 2, 1);
  return AreFoundIn(PiecesOf(line), PiecesOf(other), IsPieceOf);
}

bool IsTime(const std::string& line) { return line.find("<datetime>") != std::string::npos; }

// Of a column whose kind is not told.
std::string WithoutEmptyValues(const std::string& text) {
  static const std::regex emptyValue(R"(\s*<value>\s*<text/>\s*</value>)");
  return std::regex_replace(text, emptyValue, "");
}

}  // namespace

bool HasOnlyLost(const std::string& text, const std::string& other, bool anyTimes) {
  const auto isLeftOf = [&](const std::string& line, const std::string& whole) {
    return IsPartOf(line, whole) || (anyTimes && IsTime(line) && IsTime(whole));
  };
  return IsWholeXml(text) &&
         AreFoundIn(testing::LinesIn(WithoutEmptyValues(text)), testing::LinesIn(other), isLeftOf);
}

}  // namespace larkspan::torture
