// One run of larkspan.exe in a mode that lists.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "console/follow/StopRequests.h"

namespace larkspan::console {

struct ExporterListing {
  std::wstring folder;                  // Where it writes its files, this one among them.
  std::wstring file;                    // "\scan.txt".
  std::vector<std::wstring> arguments;  // Without the program.
  const std::wstring& password;         // Empty: none is handed on.
};

struct ListingEnd {
  bool isStopped = false;
  std::string fault;                  // Why the file is not there, or not whole; empty: it is.
  std::vector<std::string> warnings;  // Of the log.
};

// Waits for its end, and tells ten times a second how many lines the file has. A request to stop
// ends it at once. Nothing of it is at work afterwards.
ListingEnd RunExporterListing(const ExporterListing& listing, StopRequests& stops,
                              const std::function<void(std::uint64_t lines)>& watch);

}  // namespace larkspan::console
