// Whether a document is whole: a cut one leaves elements open.
#pragma once

#include <string>

namespace larkspan::torture {

// True when the text begins with an XML declaration, every element that it opens is closed in its
// turn, there is one root, and nothing but blanks stands behind it.
bool IsWholeXml(const std::string& text);

}  // namespace larkspan::torture
