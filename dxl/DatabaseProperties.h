// db.dxl: the identity of the exported database, its size, and when it was last changed.
#pragma once

#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

// Writes db.dxl into the output folder. Returns the status of the first operation of the library
// that failed, or a code of notes/StatusCodes.h when the file could not be written; either is
// logged, and an earlier db.dxl stays as it was.
Status ExportDatabaseProperties(const Database& database);

}  // namespace larkspan
