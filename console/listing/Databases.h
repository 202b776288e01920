// The databases of a server, or of this machine.
#pragma once

#include <string>

#include "console/listing/Listing.h"
#include "console/listing/ScanFile.h"

namespace larkspan::console {

// `server` as the command line says it; empty and "<Local>" are this machine.
ListingKind DatabasesOf(const std::string& server);

// The listing of a file, for the server as it was asked for, which is empty for this machine.
ListingContent DatabasesContent(const std::string& server, ScanFile scan);

}  // namespace larkspan::console
