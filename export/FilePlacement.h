// Placement of the files that the library's DXL exporter writes: first into one temporary file in
// the output folder, then, when complete, under the final name. One export at a time, main thread.
#pragma once

#include <string_view>

#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

// Exports a note, or the access control list, to a file of the output folder. The relative name
// begins with a backslash. Success, a status of the library's export, or a code of
// notes/StatusCodes.h; on failure nothing of this export is left behind, as far as it can be
// deleted; a file that stood under the final name before is still there.
Status ExportNoteToFile(const Exporter& exporter, const Note& note, std::wstring_view relativeName);
Status ExportAclToFile(const Exporter& exporter, const Database& database);

}  // namespace larkspan
