// Servers mode: the servers that the user's configuration knows, in servers.txt.
#pragma once

#include "listing/ListingFile.h"
#include "notes/Status.h"

namespace larkspan {

// Lists the user's mail server, the destinations of the local address book's connections and the
// servers of the mail server's address book. What fails is logged.
void RunServersMode();

// Collects the names, abbreviated, and then writes each once, in ascending order of its bytes in
// the Notes character set, as UTF-8. A failure writes nothing.
Status ReadServers(ListingFile& file);

}  // namespace larkspan
