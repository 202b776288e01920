#include "tests/torture/XmlLoss.h"

#include <regex>

#include "tests/support/RunTexts.h"
#include "tests/torture/XmlWholeness.h"

namespace larkspan::torture {

namespace {

// Whether the elements can be found in the others in their order.
template <typename Elements, typename Matches>
bool AreFoundIn(const Elements& elements, const Elements& others, Matches matches) {
  auto other = others.begin();
  for (const auto& element : elements) {
    while (other != others.end() && !matches(element, *other)) ++other;
    if (other == others.end()) return false;
    ++other;
  }
  return true;
}

// An element that has lost all that stood in it is one tag.
bool IsPartOf(std::string line, const std::string& other) {
  if (line.ends_with("/>")) line.erase(line.size() - 2, 1);
  return AreFoundIn(line, other, [](char one, char another) { return one == another; });
}

bool IsTime(const std::string& line) { return line.find("<datetime>") != std::string::npos; }

// Of a column whose kind is not told.
std::string WithoutEmptyValues(const std::string& text) {
  static const std::regex emptyValue(R"(\s*<value>\s*<text/>\s*</value>)");
  return std::regex_replace(text, emptyValue, "");
}

}  // namespace

bool HasOnlyLost(const std::string& text, const std::string& other, bool anyTimes) {
  return IsWholeXml(text) &&
         AreFoundIn(testing::LinesIn(WithoutEmptyValues(text)), testing::LinesIn(other),
                    [&](const std::string& line, const std::string& whole) {
                      return IsPartOf(line, whole) || (anyTimes && IsTime(line) && IsTime(whole));
                    });
}

}  // namespace larkspan::torture
