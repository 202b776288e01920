// temp.tmp of the output folder: every file that the library's DXL exporter makes is written there
// first and gets its final name when it is complete, so that a run that dies at any moment leaves
// no half file under a final name. Deleting and moving are each attempted five times, a second
// apart, with a DEBUG line for each retry: virus scanners and indexers hold new files open for
// moments. One file at a time, main thread.
#pragma once

#include <string>

#include "notes/Status.h"

namespace larkspan {

// The full path of temp.tmp.
std::wstring StagedFilePath();

// Deletes what was left of an earlier file; a missing one is no error. Logs a final failure.
Status ClearStagedFile();

// Deletes it in one attempt, and says nothing of a failure.
void DeleteStagedFile();

// Moves the complete file to its final path. Where an earlier file has that name the move fails.
// After a final failure, which is logged, temp.tmp is deleted.
Status PlaceStagedFile(const std::wstring& path);

}  // namespace larkspan
