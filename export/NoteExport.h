// The export of one open note: its file name, its exporter, and what is tried when the exporter
// fails on damaged content.
#pragma once

#include <cstdint>

#include "export/ExporterSet.h"
#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

// Exports the note, and in archive mode the raw copy of a design note with a body or a view format.
// Returns the status of the last export made. Items may be deleted from the open note, never from
// the database.
Status ExportNote(const ExporterSet& exporters, const Note& note, std::uint32_t noteId);

}  // namespace larkspan
