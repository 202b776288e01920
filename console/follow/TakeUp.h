// Where an export begins: in a new folder, or in that of a run that was cut off. Empty when it can
// go on, else a sentence that says why not.
#pragma once

#include <string>

#include "console/follow/ExportWork.h"

namespace larkspan::console {

// Makes the folder, which must be new or empty, and says there that the export is running.
std::string PrepareFolder(ExportWork& work);

// Finds out where the run in the folder goes on, and says there that it does. Of one that is
// finished only the name is left to be given.
std::string TakeUp(ExportWork& work);

}  // namespace larkspan::console
