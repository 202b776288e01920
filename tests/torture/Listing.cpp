#include "tests/torture/Listing.h"

#include <utility>

#include "app/CommandLine.h"
#include "base/Settings.h"
#include "listing/ScanMode.h"
#include "listing/ServersMode.h"
#include "tests/support/ScopedSettings.h"
#include "tests/torture/Subject.h"

namespace larkspan::torture {

namespace {

constexpr wchar_t kMill[] = L"CN=Mill/O=Example";

std::vector<Listing> Listings() {
  return {
      {"scan", "scan.txt", L"<Local>", L""},
      {"scan-server", "scan.txt", kMill, std::wstring(L"/servers/") + kMill, "CN=Mill/O=Example"},
      {"servers", "servers.txt", L""}};
}

}  // namespace

std::vector<Listing> WantedListings(const Options& options) {
  std::vector<Listing> listings = Listings();
  std::erase_if(listings, [&](const Listing& each) { return !options.Wants(each.name); });
  return listings;
}

std::vector<std::wstring> ArgumentsFor(const Listing& listing) {
  std::vector<std::wstring> arguments = {L"-debug", L"-id", kIdFile, L"-password", kPassword};
  if (listing.server.empty()) {
    arguments.push_back(L"-servers");
  } else {
    arguments.insert(arguments.end(), {L"-s", listing.server, L"-scan"});
  }
  return arguments;
}

ListingStage::ListingStage(const Listing& listing)
    : Stage(kOwnData, kListingConfiguration), listing_(listing) {
  std::vector<std::wstring> arguments = ArgumentsFor(listing);
  arguments.insert(arguments.begin(), {L"larkspan.exe", ConfigurationArgument(), L"-o", output()});
  SetProcessSettings(ParseCommandLine(arguments).settings);
}

Outcome ListingStage::List(const std::string& faultPlan) {
  Begin(faultPlan);
  // A listing leaves no password behind; the next one has a command line of its own.
  const ScopedSettings ofThisListing(ProcessSettings());
  if (listing_.server.empty()) {
    RunServersMode();
  } else {
    RunScanMode();
  }
  return TakeOutcome(output());
}

}  // namespace larkspan::torture
