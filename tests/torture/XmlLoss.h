// Whether a document lacks something, and nothing else.
#pragma once

#include <string>

namespace larkspan::torture {

// True when the text is a whole document whose lines are those of the other one, in their order,
// with any of them, or of their attributes and texts, left out; values without a text may be
// anywhere. With anyTimes a date-time may be any other.
bool HasOnlyLost(const std::string& text, const std::string& other, bool anyTimes);

}  // namespace larkspan::torture
