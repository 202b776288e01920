#include "tests/fuzz/PrintedXml.h"

#include <cstdlib>
#include <string>

#include "notes/NotesApi.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

constexpr char kLayout[] = " \n";

bool IsForbiddenInXml(std::string_view utf8) {
  return utf8.find("\xEF\xBF\xBE") != std::string_view::npos ||
         utf8.find("\xEF\xBF\xBF") != std::string_view::npos;
}

bool IsBreak(char byte) { return byte == '\0' || byte == '\n' || byte == '\r'; }

// What an element for a character stands for; every break for a line feed.
char CharacterOf(const XmlNode& element) {
  if (element.name == "break") {
    Require(element.attributes.empty(), "a break has no attributes");
    return '\n';
  }
  Require(element.name == "nonxmlchar", "text holds no other elements");
  const std::string& value = element.attributes.at("value");
  Require(value.size() == 4, "a character code has four digits");
  return static_cast<char>(std::strtoul(value.c_str(), nullptr, 16));
}

// Behind elements alone the printer begins a new line for the end tag.
bool IsLayoutAlone(const XmlNode& element) {
  return element.children.size() > 1 && element.children.back().name.empty() &&
         element.children.back().characters.find_first_not_of(kLayout) == std::string::npos;
}

// The text that the element carries, with every break as a line feed.
std::string Carried(const XmlNode& element, bool hasCharacters) {
  std::string carried;
  for (const XmlNode& child : element.children) {
    const bool isLayout =
        !hasCharacters && &child == &element.children.back() && IsLayoutAlone(element);
    if (isLayout) break;
    carried += child.name.empty() ? child.characters : std::string(1, CharacterOf(child));
  }
  return carried;
}

}  // namespace

void CheckPrinted(const std::function<void(tinyxml2::XMLPrinter&)>& write,
                  const std::function<void(const XmlNode&)>& check) {
  tinyxml2::XMLPrinter printer;
  printer.OpenElement("printed");
  write(printer);
  printer.CloseElement();
  const std::string text(printer.CStr(), static_cast<std::size_t>(printer.CStrSize()) - 1);
  if (!IsForbiddenInXml(text)) check(ParseXml(text).root);
}

void CheckDxlText(const XmlNode& element, std::string_view utf8) {
  std::string expected;
  bool hasCharacters = false;
  for (const char byte : utf8) {
    expected.push_back(IsBreak(byte) ? '\n' : byte);
    if (static_cast<unsigned char>(byte) >= 0x20 || byte == '\t') hasCharacters = true;
  }
  Require(Carried(element, hasCharacters) == expected, "the element carries the text");
}

}  // namespace larkspan::fuzz
