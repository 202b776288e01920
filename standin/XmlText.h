// Text, attributes and bytes as they may stand in XML. Input is valid UTF-8; characters that XML
// cannot carry become U+FFFD. Stateless; any thread may call.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "notes/NotesApi.h"

namespace larkspan::standin {

// Line feeds become <break/>.
std::string XmlText(std::string_view text);

// The value with its quotation marks.
std::string XmlAttribute(std::string_view value);

// The text as it is, but for control characters, which become blanks, and for hyphens in a row,
// which are kept apart.
std::string XmlComment(std::string_view text);

// In lines of 76 characters, each ended with a line feed.
std::string Base64(const std::vector<notes_api::BYTE>& bytes);

}  // namespace larkspan::standin
