// What really lies in a folder, as the entries of a data directory.
#pragma once

#include <filesystem>
#include <vector>

#include "standin/Directory.h"

namespace larkspan::standin {

// The databases (files whose names end in .nsf) and folders in it, all the way down, in the order
// of their paths; not the hidden folder and what is in it. A file that is no database is there all
// the same, with nothing but its path. Throws std::filesystem::filesystem_error when a folder
// cannot be listed.
std::vector<DirectoryEntry> ListFolder(const std::filesystem::path& folder,
                                       const std::filesystem::path& hidden);

}  // namespace larkspan::standin
