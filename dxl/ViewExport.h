// The content of all views and folders of a database.
#pragma once

#include "notes/Handles.h"

namespace larkspan {

// Writes one file a view into the output folder's views, with a progress line for each view. Ends
// early when the run is to stop. A view that is left out, or cannot be read, has no file and no
// line; a file that cannot be written is logged, and the other views go on.
void ExportViews(const Database& database);

}  // namespace larkspan
