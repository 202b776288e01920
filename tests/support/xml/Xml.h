// Reads XML with a parser that shares nothing with the printer that wrote it.
#pragma once

#include <map>
#include <string>
#include <vector>

namespace larkspan {

using XmlAttributes = std::map<std::string, std::string>;

// An element, or a run of characters between elements. Texts are UTF-8.
struct XmlNode {
  std::string name;        // empty for a run of characters
  std::string characters;  // of a run
  XmlAttributes attributes;
  std::vector<XmlNode> children;
};

struct XmlDocument {
  std::string doctype;  // the name in the document type declaration, if there is one
  XmlNode root;
};

// Throws std::runtime_error with the parser's message and the line when the file is not
// well-formed.
XmlDocument ParseXml(const std::string& file);

// The elements in an element that holds nothing else; throws std::runtime_error when characters
// other than layout stand between them.
std::vector<XmlNode> ChildElements(const XmlNode& element);

}  // namespace larkspan
