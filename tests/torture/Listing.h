// The two listings, as they are made over and over again.
#pragma once

#include <string>
#include <vector>

#include "tests/torture/Options.h"
#include "tests/torture/Outcome.h"
#include "tests/torture/Stage.h"

namespace larkspan::torture {

struct Listing {
  std::string name;
  std::string file;       // In the output folder.
  std::wstring server;    // Whose databases are listed; empty: the servers are listed.
  std::wstring folder{};  // What is listed, in the data folder.
  std::string asked{};    // The first line when the library does not tell it.
};

// Those that the command line asks for of these: the databases of this machine, those of a server,
// and the servers.
std::vector<Listing> WantedListings(const Options& options);

// The program's arguments for the listing, but for the configuration and the output folder.
std::vector<std::wstring> ArgumentsFor(const Listing& listing);

// A line of the library's configuration.
inline constexpr char kListingConfiguration[] = "MailServer=CN=Mill/O=Example";

class ListingStage : public Stage {
 public:
  explicit ListingStage(const Listing& listing);

  // Lists into an empty folder, in this process, with a fault plan for the library.
  Outcome List(const std::string& faultPlan);

  const Listing& listing() const { return listing_; }

 private:
  const Listing listing_;
};

}  // namespace larkspan::torture
