// Says what keeps a text from being a well-formed XML document, so far as DXL needs XML: a
// declaration, a document type without a subset, comments, elements, attributes, character data.
#pragma once

#include <string>
#include <string_view>

namespace larkspan::standin_test {

// Empty when the document is well-formed.
std::string XmlFault(std::string_view document);

}  // namespace larkspan::standin_test
