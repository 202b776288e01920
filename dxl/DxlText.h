// Text inside the XML files that the program writes itself.
#pragma once

#include <tinyxml2.h>

#include <cstdint>

namespace larkspan {

// Writes UTF-8 text into the open element. A NUL, a line feed and a carriage return each become a
// `break` element; every other character below the space but the tab, which XML cannot carry, a
// `nonxmlchar` element that tells its code. A length of zero or less writes nothing.
void WriteDxlText(tinyxml2::XMLPrinter& printer, const char* utf8, std::int32_t length);

}  // namespace larkspan
