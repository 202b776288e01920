// What the commands that list have in common on the command line.
#pragma once

#include "console/ExitCode.h"
#include "console/follow/Password.h"
#include "console/listing/Listing.h"

namespace CLI {
class App;
}

namespace larkspan::console {

struct ListingOptions {
  ListingRequest request;
  PasswordSources password;
  bool csv = false;
  bool json = false;
};

// All but the server.
void AddListingOptions(CLI::App& command, ListingOptions& options);

// Takes the password and lists.
ExitCode RunListingCommand(ListingOptions& options, const ListingKind& kind);

}  // namespace larkspan::console
