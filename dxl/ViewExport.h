// The content of all views and folders of a database.
#pragma once

#include "notes/Handles.h"
#include "notes/LibraryFunctions.h"

namespace larkspan {

// Writes one file a view into the output folder's views, with a progress line for each view. Ends
// early when the run is to stop. Nothing is reported: a view that is not exported has no file.
void ExportViews(const LibraryFunctions& functions, const Database& database);

}  // namespace larkspan
