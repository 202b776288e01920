// db.dxl: the identity of the exported database, its size, and when it was last changed.
#pragma once

#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

// Writes db.dxl into the output folder. Returns the status of the first operation of the library
// that failed, and leaves an earlier db.dxl as it was, or kOutputNotWritten when the file could not
// be written (see XmlDocument::Save); either is logged.
Status ExportDatabaseProperties(const Database& database);

}  // namespace larkspan
