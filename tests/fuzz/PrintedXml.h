// What the product's writers print, read back with a parser of another make, and compared with what
// was to be written.
#pragma once

#include <tinyxml2.h>

#include <functional>
#include <string_view>

#include "base/ByteReader.h"
#include "tests/support/xml/Xml.h"

namespace larkspan::fuzz {

// Hands the node of an element, between whose tags the writer prints, to the check. The check is
// left out when the print holds U+FFFE or U+FFFF: both are UTF-8, but no XML document can carry
// them. Text that is otherwise not well-formed ends the process.
void CheckPrinted(const std::function<void(tinyxml2::XMLPrinter&)>& write,
                  const std::function<void(const XmlNode&)>& check);

// The element holds the text, in UTF-8, as the writer of DXL text breaks it up.
void CheckDxlText(const XmlNode& element, std::string_view utf8);

// The element holds one `text` element with the text, which is in the Notes character set.
void CheckText(const XmlNode& element, std::string_view notes);

// The element holds what a value with its type word has to give.
void CheckItemValue(const XmlNode& element, Bytes value);

}  // namespace larkspan::fuzz
