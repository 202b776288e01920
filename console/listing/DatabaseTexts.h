// A listing of databases as a table, as CSV and as JSON.
#pragma once

#include <string>

#include "console/listing/Listing.h"
#include "console/listing/ScanFile.h"

namespace larkspan::console {

// `server` as it was asked for; empty: this machine. A table for a window leaves out the last
// columns where the window is too narrow for them; 0: it has all of them, and nothing is cut.
std::string DatabasesText(const std::string& server, const ScanFile& scan, ListingFormat format,
                          int width);

}  // namespace larkspan::console
