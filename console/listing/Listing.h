// What the two listings of larkspan.exe have in common, from the request to what a person or a
// program gets.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "console/ExitCode.h"
#include "console/follow/StopRequests.h"

namespace larkspan::console {

enum class ListingFormat { kTable, kCsv, kJson };

// As the command line says it. UTF-8.
struct ListingRequest {
  std::string idFile;
  std::string notesIni;
  ListingFormat format = ListingFormat::kTable;
  std::string to;  // The file to write; empty: standard output.
  bool quiet = false;
};

// What the file of a run holds.
struct ListingContent {
  std::string whyNone;  // Why there is no listing at all; empty: there is one.
  std::uint64_t entries = 0;
  std::string summary;               // "2 databases and 1 folder".
  std::vector<std::string> faults;   // Of lines that are no entry, a sentence each.
  std::uint64_t faultCount = 0;      // Of all of them.
  std::vector<std::string> remarks;  // What a person should know, though nothing is lost.
  // The whole listing, with its last line end; a table of so many columns at most, 0: any number.
  std::function<std::string(ListingFormat format, int width)> text;
};

// One of the two.
struct ListingKind {
  std::wstring file;                    // "\scan.txt".
  std::vector<std::wstring> arguments;  // Those that ask for it.
  std::string subject;                  // "The databases of 'Mill/Example'".
  std::string place;                    // For the line that shows the work; empty: none.
  std::function<ListingContent(const std::wstring& path)> read;
};

// Writes the listing, and on standard error what went wrong.
ExitCode RunListing(const ListingKind& kind, const ListingRequest& request, StopRequests& stops,
                    const std::wstring& password);

}  // namespace larkspan::console
