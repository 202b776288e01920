// The subfolders of the output folder.
#pragma once

namespace larkspan {

// In archive mode creates the subfolders of an archive. Folders that exist, and what is in them,
// are left as they are; a folder that cannot be created shows when its first file is placed.
void CreateOutputSubfolders();

}  // namespace larkspan
