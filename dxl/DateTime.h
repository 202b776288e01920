// Date-times in the XML files that the program writes itself.
#pragma once

#include <tinyxml2.h>

#include "notes/NotesApi.h"

namespace larkspan {

// Writes a `datetime` element in universal time: 20240131T143005,27+00, or 20240131 without a time
// part, or T143005,27 without a date part.
void WriteDateTime(tinyxml2::XMLPrinter& printer, const notes_api::TIMEDATE& time);

}  // namespace larkspan
