// A value as a view shows it, in a form that files and databases can both be brought into.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "tests/support/xml/Xml.h"

namespace larkspan {

struct ShownValue {
  std::string type;               // the name of its element; empty when nothing is shown
  std::string text;               // of a text, and of a date-time (as databases write it)
  double number = 0;              // of a number
  std::vector<ShownValue> parts;  // of a list or a pair

  bool operator==(const ShownValue&) const = default;
};

// What tests print where values differ.
std::ostream& operator<<(std::ostream& out, const ShownValue& value);

// In texts a line feed, a carriage return and a NUL are one and the same.
inline constexpr char kBreak = '\n';

// Reads the content of a "value" element. Throws std::runtime_error for what no value looks like.
ShownValue ReadShownValue(const XmlNode& valueElement);

// Reads a "datetime" element and gives the moment as databases write it, always with hundredths
// where it has a time. Throws std::runtime_error when it has none of the three forms.
std::string ReadMoment(const XmlNode& dateTimeElement);

// A number that a whole text spells, with a full stop. Throws std::runtime_error for other texts.
double ReadNumber(const std::string& text);

}  // namespace larkspan
