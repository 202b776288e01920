#include "console/ListingOptions.h"

#include <CLI/CLI.hpp>
#include <optional>

#include "base/Wipe.h"
#include "console/CommandLine.h"
#include "console/ExportOptions.h"

namespace larkspan::console {

void AddListingOptions(CLI::App& command, ListingOptions& options) {
  ListingRequest& request = options.request;
  AddIdentityOptions(command, request.idFile, options.password);
  AddText(command, "--notes-ini", request.notesIni, "Configuration file of the Notes library");
  CLI::Option* const csv =
      command.add_flag("--csv", options.csv, "Comma-separated values (RFC 4180) with a header");
  command.add_flag("--json", options.json, "One JSON document")->excludes(csv);
  AddText(command, "--to", request.to, "Write into this file, as UTF-8; an earlier one is replaced")
      ->check([](const std::string& file) { return file.empty() ? "it is empty" : std::string(); });
  command.add_flag("--quiet", request.quiet, "Write nothing but the listing, and what went wrong");
}

ExitCode RunListingCommand(ListingOptions& options, const ListingKind& kind) {
  ListingRequest& request = options.request;
  request.format = options.csv    ? ListingFormat::kCsv
                   : options.json ? ListingFormat::kJson
                                  : ListingFormat::kTable;
  StopRequests stops;
  std::optional<LineSource> input;
  std::wstring password;
  if (const auto code = TakeIdentity(request.idFile, options.password, stops, input, password))
    return *code;
  const ExitCode code = RunListing(kind, request, stops, password);
  Wipe(password);
  return code;
}

}  // namespace larkspan::console
