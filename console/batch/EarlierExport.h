// What an earlier run of a batch has left of a database.
#pragma once

#include <string>

#include "console/batch/BatchEntry.h"
#include "console/follow/ExportRequest.h"

namespace larkspan::console {

enum class Earlier {
  kNothing,   // Nothing is there, or only attempts that are not gone on with.
  kCutOff,    // An attempt can be gone on with.
  kFinished,  // The folder has the export; the entry then tells of it.
  kInTheWay,  // The folder holds something else; the entry then says so.
};

// Looks at the folder of the entry, and at the last attempt beside it. `wanted` has the options of
// the export, without its database.
Earlier LookForEarlier(const ExportRequest& wanted, BatchEntry& entry);

// Takes what the outcome.json in the folder `out` tells, sealed or not. False when it has none that
// can be read, or not of this database; the entry is then as it was.
bool TakeOutcome(const std::wstring& out, BatchEntry& entry);

}  // namespace larkspan::console
