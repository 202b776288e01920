#include "tests/xml/ShownEntry.h"

#include <stdexcept>

namespace larkspan {

std::ostream& operator<<(std::ostream& out, const ShownEntry& entry) {
  out << entry.element;
  for (const auto& [name, value] : entry.attributes) out << " " << name << "=" << value;
  for (const ShownValue& value : entry.values) out << " {" << value << "}";
  return out;
}

std::vector<ShownEntry> ReadShownEntries(const std::string& file) {
  const XmlDocument document = ParseXml(file);
  if (document.root.name != "view" || !document.root.attributes.empty() ||
      !document.doctype.empty()) {
    throw std::runtime_error("this is no view's file");
  }
  std::vector<ShownEntry> entries;
  for (const XmlNode& element : ChildElements(document.root)) {
    ShownEntry& entry = entries.emplace_back(ShownEntry{element.name, element.attributes, {}});
    for (const XmlNode& value : ChildElements(element)) {
      entry.values.push_back(ReadShownValue(value));
    }
  }
  return entries;
}

}  // namespace larkspan
