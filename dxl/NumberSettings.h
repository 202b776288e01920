// The conventions by which numbers are written: the machine's, but for the decimal separator. One
// copy for the process; main thread.
#pragma once

#include "notes/NotesApi.h"

namespace larkspan {

// Fetches the machine's conventions and makes the decimal separator a full stop, so that files from
// machines of all languages read alike. To be called before a number is written.
void FetchNumberSettings();

const notes_api::IntlSettings& NumberSettings();

}  // namespace larkspan
