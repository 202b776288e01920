// Reads values from the JSON of a database file. Whatever does not fit throws std::runtime_error
// (or an exception of the JSON library) with a message for the file's author.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "standin/Bytes.h"

namespace larkspan::standin {

// The value of an item, which is always well made. Other keys of the object do not matter.
Bytes ReadValue(const nlohmann::json& from);

// A value that a view shows: lists may have pairs, and "bytes" alone are the value as it stands,
// type word included, well made or not.
Bytes ReadViewValue(const nlohmann::json& from);

}  // namespace larkspan::standin
