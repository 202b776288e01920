#include "tests/xml/ShownValue.h"

#include <algorithm>
#include <charconv>
#include <regex>
#include <stdexcept>
#include <system_error>

namespace larkspan {

namespace {

using Names = std::vector<std::string>;

const Names kValues = {"text", "textlist", "number", "numberlist", "datetime", "datetimelist"};

// What lists and pairs are made of.
const std::map<std::string, Names> kParts = {{"textlist", {"text"}},
                                             {"numberlist", {"number"}},
                                             {"datetimelist", {"datetime", "datetimepair"}},
                                             {"datetimepair", {"datetime"}}};

[[noreturn]] void Fail(const std::string& element, const std::string& content) {
  throw std::runtime_error("\"" + content + "\" cannot be the content of " + element);
}

// The content of an element that holds no other elements.
std::string PlainCharacters(const XmlNode& element) {
  if (element.children.size() != 1 || !element.children[0].name.empty()) Fail(element.name, "");
  return element.children[0].characters;
}

// Only control characters that are neither a break nor a tab are written so.
char ReadNonXmlCharacter(const XmlNode& element) {
  static const std::regex pattern("00(0[1-8BCEF]|1[0-9A-F])");
  const std::string digits = element.attributes.at("value");
  if (!std::regex_match(digits, pattern)) Fail(element.name, digits);
  return static_cast<char>(std::stoi(digits, nullptr, 16));
}

std::string ReadTextPiece(const XmlNode& piece) {
  if (piece.name == "nonxmlchar") return {ReadNonXmlCharacter(piece)};
  if (piece.name == "break" && piece.children.empty()) return {kBreak};
  const bool isBroken = piece.characters.find_first_of("\r\n") != std::string::npos;
  if (!piece.name.empty() || isBroken) Fail("text", piece.name + piece.characters);
  return piece.characters;
}

std::string ReadText(const XmlNode& element) {
  std::string text;
  for (const XmlNode& piece : element.children) text += ReadTextPiece(piece);
  return text;
}

ShownValue ReadTyped(const XmlNode& element, const Names& allowed) {
  const std::string& name = element.name;
  if (std::find(allowed.begin(), allowed.end(), name) == allowed.end()) Fail("value", name);
  if (!element.attributes.empty()) Fail(name, element.attributes.begin()->first);
  if (name == "text") return {name, ReadText(element), 0, {}};
  if (name == "number") return {name, "", ReadNumber(PlainCharacters(element)), {}};
  if (name == "datetime") return {name, ReadMoment(element), 0, {}};
  ShownValue list = {name, "", 0, {}};
  for (const XmlNode& part : ChildElements(element)) {
    list.parts.push_back(ReadTyped(part, kParts.at(name)));
  }
  return list;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const ShownValue& value) {
  out << value.type << " '" << value.text << "' " << value.number;
  for (const ShownValue& part : value.parts) out << " [" << part << "]";
  return out;
}

ShownValue ReadShownValue(const XmlNode& valueElement) {
  const std::vector<XmlNode> elements = ChildElements(valueElement);
  if (valueElement.name != "value" || !valueElement.attributes.empty() || elements.size() > 1) {
    Fail("an entry", valueElement.name);
  }
  return elements.empty() ? ShownValue() : ReadTyped(elements[0], kValues);
}

std::string ReadMoment(const XmlNode& dateTimeElement) {
  static const std::regex full(R"((\d{4})(\d\d)(\d\d)T(\d\d)(\d\d)(\d\d),(\d\d)\+00)");
  static const std::regex date(R"((\d{4})(\d\d)(\d\d))");
  static const std::regex time(R"(T(\d\d)(\d\d)(\d\d),(\d\d))");
  const std::string text = PlainCharacters(dateTimeElement);
  const auto written = [&text](const std::regex& form, const char* as) {
    return std::regex_match(text, form) ? std::regex_replace(text, form, as) : std::string();
  };
  const std::string moment = written(full, "$1-$2-$3T$4:$5:$6.$7Z") + written(date, "$1-$2-$3") +
                             written(time, "T$1:$2:$3.$4Z");
  if (moment.empty()) Fail(dateTimeElement.name, text);
  return moment;
}

double ReadNumber(const std::string& text) {
  double number = 0;
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc() || behind != end) Fail("number", text);
  return number;
}

}  // namespace larkspan
