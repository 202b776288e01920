// What is to be done for each database of a list.
#pragma once

#include <string>
#include <vector>

#include "console/batch/BatchEntry.h"
#include "console/follow/ExportRequest.h"

namespace larkspan::console {

// One entry for each database, with its folder below the root: waiting, or done where an earlier
// run has finished it, or nothing can be done. `wanted` has the options of the exports.
std::vector<BatchEntry> PlanEntries(const std::wstring& root,
                                    const std::vector<ListedDatabase>& databases,
                                    const ExportRequest& wanted);

}  // namespace larkspan::console
