// All names are collected before the first is written: a list without the servers of one address
// book would look complete.
#include "listing/ServersMode.h"

#include <set>
#include <string>

#include "base/OutputPaths.h"
#include "listing/ListingRun.h"
#include "notes/AddressBook.h"
#include "notes/StatusCodes.h"
#include "notes/Utf8Text.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

// Text compares its bytes as unsigned numbers, and a prefix comes before what it begins.
using ServerNames = std::set<std::string>;

Status AddServers(const char* server, std::string_view nameSpace, std::string_view item,
                  ServerNames& names) {
  return LookUpServers(server, nameSpace, item, [&](const std::string& name) {
    std::string abbreviated;
    const Status status = AbbreviateName(name, abbreviated);
    if (status.ok() && !abbreviated.empty()) names.insert(abbreviated);
    return status;
  });
}

Status CollectServers(ServerNames& names) {
  constexpr const char* kLocalAddressBook = nullptr;
  std::string mailServer;
  if (!GetMailServer(mailServer)) return kNoMailServer;
  std::string abbreviated;
  if (const Status status = AbbreviateName(mailServer, abbreviated); !status.ok()) return status;
  names.insert(abbreviated);
  const Status status = AddServers(kLocalAddressBook, "$Connections", "Destination", names);
  if (!status.ok()) return status;
  return AddServers(mailServer.c_str(), "($Servers)", "ServerName", names);
}

void ListServers(ListingFile& file) {
  const Status status = ReadServers(file);
  if (!status.ok()) LogStatus(LogLevel::kError, L"Unable to read servers (%s)", status);
}

}  // namespace

Status ReadServers(ListingFile& file) {
  constexpr std::size_t kMaxNameBytes = 1023;
  ServerNames names;
  if (const Status status = CollectServers(names); !status.ok()) return status;
  for (const std::string& name : names) file.WriteLine(NotesToUtf8(name, kMaxNameBytes));
  return Status();
}

void RunServersMode() { RunListing(output::kServers, ListServers); }

}  // namespace larkspan
