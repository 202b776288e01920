// Databases of the stand-in library, as JSON texts.
#pragma once

#include <string>

namespace larkspan::testing {

// A database of so many documents, with the IDs 00000902, 00000906 and so on, and further members
// of the database's JSON object, each followed by a comma.
std::string DocumentsJson(int count, const std::string& members = "");

// The "faults" member of a database, with its comma, from the text of one or more faults.
std::string FaultsMember(const std::string& faults);

}  // namespace larkspan::testing
