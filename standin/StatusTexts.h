// The words of statuses, as the library's text table would give them.
#pragma once

#include <string>

#include "notes/NotesApi.h"

namespace larkspan::standin {

// Text in the Notes character set for the error number of a status; a number that the table lacks
// gets a text that shows it.
std::string StatusText(notes_api::STATUS status);

}  // namespace larkspan::standin
