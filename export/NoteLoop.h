// The walk over the listed notes, one after another.
#pragma once

#include <cstdint>

#include "export/ExporterSet.h"
#include "notes/Handles.h"

namespace larkspan {

// Exports every note of the table whose ID is greater than the resume note ID, in ascending order.
// A note that cannot be exported is logged and passed over. Returns whether the walk reached the
// end of the table; it ends early when the marker file cannot be written, when the run is asked to
// stop, when a design cannot be exported, and, with a line in the log, when the library ends the
// scan of the table before its end. However it ends, but for a crash or an exception, it
// leaves no marker file.
bool ExportListedNotes(const ExporterSet& exporters, const Database& database, const IdTable& notes,
                       std::uint32_t resumeNoteId);

}  // namespace larkspan
