// The ID table file, idtable.txt in the output folder: the note IDs of an export, one a line in
// ascending order. The first worker writes it; every later worker of the run reads it back, so that
// all of them walk the same list.
#pragma once

#include "notes/Handles.h"

namespace larkspan {

// Writes the table's note IDs, replacing any old file. Fails also when the library ends the scan of
// the table before its end. On failure no file is left behind, save an old one that cannot be
// opened.
bool WriteIdTableFile(const IdTable& table);

// Inserts the file's note IDs into the table. False when the file cannot be opened, when the
// reading stops before its end, or when an ID cannot be inserted; those read by then stay.
bool ReadIdTableFile(const IdTable& table);

}  // namespace larkspan
