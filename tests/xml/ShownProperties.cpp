#include "tests/xml/ShownProperties.h"

#include <stdexcept>

#include "tests/xml/ShownValue.h"

namespace larkspan {

namespace {

[[noreturn]] void FailAt(const std::string& element) {
  throw std::runtime_error("\"" + element + "\" is not as it must be");
}

void RequireName(const XmlNode& element, const std::string& name) {
  if (element.name != name) FailAt(element.name);
}

// The only element in this one.
XmlNode OnlyChild(const XmlNode& element, const std::string& name) {
  const std::vector<XmlNode> elements = ChildElements(element);
  if (elements.size() != 1) FailAt(element.name);
  RequireName(elements[0], name);
  return elements[0];
}

std::string ReadModified(const XmlNode& element, const std::string& name) {
  RequireName(element, name);
  const XmlNode dateTime = OnlyChild(element, "datetime");
  if (!element.attributes.empty() || !dateTime.attributes.empty()) FailAt(name);
  return ReadMoment(dateTime);
}

std::ostream& operator<<(std::ostream& out, const XmlAttributes& attributes) {
  for (const auto& [name, value] : attributes) out << name << "=\"" << value << "\" ";
  return out;
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const ShownProperties& properties) {
  return out << properties.attributes << properties.infoAttributes << properties.percentUsed << "% "
             << properties.dataModified << " " << properties.designModified;
}

ShownProperties ReadShownProperties(const std::string& file) {
  const XmlDocument document = ParseXml(file);
  if (document.doctype != "database") FailAt(document.doctype);
  RequireName(document.root, document.doctype);
  XmlNode info = OnlyChild(document.root, "databaseinfo");
  const std::vector<XmlNode> times = ChildElements(info);
  if (times.size() != 2) FailAt(info.name);
  ShownProperties properties;
  properties.attributes = document.root.attributes;
  properties.percentUsed = ReadNumber(info.attributes.at("percentused"));
  info.attributes.erase("percentused");
  properties.infoAttributes = info.attributes;
  properties.dataModified = ReadModified(times[0], "datamodified");
  properties.designModified = ReadModified(times[1], "designmodified");
  return properties;
}

}  // namespace larkspan
