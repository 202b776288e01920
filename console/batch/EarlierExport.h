// What an earlier run of a batch has left of a database.
#pragma once

#include "console/batch/BatchEntry.h"

namespace larkspan::console {

enum class Earlier {
  kNothing,   // Nothing is there, or only attempts that nothing can be gone on with.
  kCutOff,    // An attempt can be gone on with.
  kFinished,  // The folder has the export; the entry then tells of it.
  kForeign,   // The folder holds something else; the entry then says so.
};

// Looks at the folder of the entry, and at the last attempt beside it.
Earlier LookForEarlier(BatchEntry& entry);

// Takes what the outcome.json in the folder `out` tells, sealed or not. False when it has none that
// can be read, or not of this database; the entry is then as it was.
bool TakeOutcome(const std::wstring& out, BatchEntry& entry);

}  // namespace larkspan::console
