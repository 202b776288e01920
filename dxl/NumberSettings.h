// The conventions by which numbers are written: the machine's, but for the decimal separator.
#pragma once

#include "notes/NotesApi.h"

namespace larkspan {

// The machine's conventions with a full stop as the decimal separator, so that files from machines
// of all languages read alike.
notes_api::IntlSettings GetNumberSettings();

}  // namespace larkspan
