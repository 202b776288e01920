// What a first worker finds and makes in the output folder before it exports notes.
#pragma once

namespace larkspan {

// In archive mode creates the subfolders of an archive. Folders that exist, and what is in them,
// are left as they are; a folder that cannot be created shows when its first file is placed.
void CreateOutputSubfolders();

// Deletes what runs that were ended from outside have left of db.dxl and of views that were not
// complete yet. What cannot be deleted stays, and is written over when its file is written again.
void DeleteLeftStages();

}  // namespace larkspan
