// The values that a database file says, as a view is to show them.
#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "tests/xml/ShownValue.h"

namespace larkspan {

// Throws std::runtime_error for bytes that are no text of plain letters.
ShownValue DatabaseValue(const nlohmann::json& value);

// A date-time of a database file, always with hundredths where it has a time.
std::string DatabaseMoment(const nlohmann::json& dateTime);

}  // namespace larkspan
