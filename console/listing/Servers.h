// The servers that the user's configuration knows.
#pragma once

#include "console/listing/Listing.h"
#include "console/listing/ServersFile.h"

namespace larkspan::console {

ListingKind KnownServers();

// The listing of a file.
ListingContent ServersContent(ServersFile servers);

}  // namespace larkspan::console
