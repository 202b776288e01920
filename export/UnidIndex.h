// The UNID index file, unidindex.txt in the output folder of an archive: one line for each opened
// note with its note ID and its universal ID.
#pragma once

#include <cstdint>

#include "notes/Handles.h"

namespace larkspan {

// Deletes the file; a missing file is no error.
void DeleteUnidIndex();

// Appends the note's line. A file that cannot be opened is passed over silently.
void AppendUnidLine(const Note& note, std::uint32_t noteId);

}  // namespace larkspan
