#include "tests/support/xml/Xml.h"

#include <expat.h>

#include <memory>
#include <stdexcept>

namespace larkspan {

namespace {

constexpr char kLayout[] = " \r\n";

// What is read so far: the open elements, outermost first, below a node that holds the root.
struct Reading {
  std::string doctype;
  XmlNode top;
  std::vector<XmlNode*> open = {&top};
};

void StartDoctype(void* data, const XML_Char* name, const XML_Char* /*systemId*/,
                  const XML_Char* /*publicId*/, int /*hasInternalSubset*/) {
  static_cast<Reading*>(data)->doctype = name;
}

void StartElement(void* data, const XML_Char* name, const XML_Char** attributes) {
  auto* reading = static_cast<Reading*>(data);
  XmlNode& element = reading->open.back()->children.emplace_back();
  element.name = name;
  for (; *attributes != nullptr; attributes += 2) element.attributes[attributes[0]] = attributes[1];
  reading->open.push_back(&element);
}

void EndElement(void* data, const XML_Char* /*name*/) {
  static_cast<Reading*>(data)->open.pop_back();
}

// One run may come in pieces.
void AddCharacters(void* data, const XML_Char* characters, int length) {
  std::vector<XmlNode>& siblings = static_cast<Reading*>(data)->open.back()->children;
  if (siblings.empty() || !siblings.back().name.empty()) siblings.emplace_back();
  siblings.back().characters.append(characters, static_cast<std::size_t>(length));
}

}  // namespace

XmlDocument ParseXml(const std::string& file) {
  const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(
      XML_ParserCreate(nullptr), &XML_ParserFree);
  Reading reading;
  XML_SetUserData(parser.get(), &reading);
  XML_SetStartDoctypeDeclHandler(parser.get(), StartDoctype);
  XML_SetElementHandler(parser.get(), StartElement, EndElement);
  XML_SetCharacterDataHandler(parser.get(), AddCharacters);
  if (XML_Parse(parser.get(), file.data(), static_cast<int>(file.size()), XML_TRUE) !=
      XML_STATUS_OK) {
    throw std::runtime_error("line " + std::to_string(XML_GetCurrentLineNumber(parser.get())) +
                             ": " + XML_ErrorString(XML_GetErrorCode(parser.get())));
  }
  return {reading.doctype, reading.top.children.at(0)};
}

std::vector<XmlNode> ChildElements(const XmlNode& element) {
  std::vector<XmlNode> elements;
  for (const XmlNode& child : element.children) {
    if (!child.name.empty()) {
      elements.push_back(child);
    } else if (child.characters.find_first_not_of(kLayout) != std::string::npos) {
      throw std::runtime_error(element.name + " holds characters: " + child.characters);
    }
  }
  return elements;
}

}  // namespace larkspan
