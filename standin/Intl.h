// Conventions of the machine, of which only the decimal separator of numbers is known, and numbers
// written by them. Stateless; any thread may call.
#pragma once

#include <string>
#include <string_view>

#include "notes/NotesApi.h"

namespace larkspan::standin {

// Fills what nobody may rely on.
inline constexpr char kGarbageCharacter = '#';

// Everything but the separator is garbage. A separator that does not fit is a strict failure.
notes_api::IntlSettings MakeIntlSettings(std::string_view decimalSeparator);

// Good while the settings are. Fails when the separator does not end.
std::string_view DecimalSeparator(const notes_api::IntlSettings& settings);

// The shortest text that reads back as the number: plain from 0.0001 up to a quadrillion, otherwise
// with an exponent, as in "1E+20"; "INF" and "NAN" with their signs. At most 24 bytes and the
// separator.
std::string NumberText(double number, std::string_view decimalSeparator);

}  // namespace larkspan::standin
