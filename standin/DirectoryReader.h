// Finds out what a data directory holds.
#pragma once

#include <filesystem>
#include <memory>

#include "standin/Directory.h"

namespace larkspan::standin {

// What the file directory.json of the folder says or, where there is none or it leaves that open,
// the databases and folders that lie there, all the way down; the hidden folder is left out. Throws
// an exception derived from std::exception when the file makes no sense.
std::shared_ptr<const Directory> ReadDirectory(const std::filesystem::path& folder,
                                               const std::filesystem::path& hidden);

}  // namespace larkspan::standin
