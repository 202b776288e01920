// The folder of each database of a batch. It stays the same from run to run: where a folder has the
// outcome.json of a database, it is its folder.
#pragma once

#include <string>
#include <vector>

#include "console/batch/BatchList.h"

namespace larkspan::console {

// Whether the folder is that of an export, sealed or not: nothing else may go into it.
bool HoldsExport(const std::wstring& folder);

// One for each database, below the root, whole paths; no two are the same, whatever the case of
// their letters, and none is above another one. A line that names a folder has none. Reads the
// outcome.json of what is there.
std::vector<std::wstring> ChooseFolders(const std::wstring& root,
                                        const std::vector<ListedDatabase>& databases);

}  // namespace larkspan::console
