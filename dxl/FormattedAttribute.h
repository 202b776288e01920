// Attributes whose values are formatted.
#pragma once

#include <tinyxml2.h>

#include <array>
#include <cstdio>

namespace larkspan {

// Writes an attribute of the open element, its value formatted as by printf and cut at 199
// characters.
template <typename... Arguments>
void PushFormatted(tinyxml2::XMLPrinter& printer, const char* name, const char* format,
                   Arguments... arguments) {
  std::array<char, 200> text{};
  std::snprintf(text.data(), text.size(), format, arguments...);
  printer.PushAttribute(name, text.data());
}

}  // namespace larkspan
