// servers: lists the servers that the user's configuration knows.
#include <CLI/CLI.hpp>
#include <memory>

#include "console/Command.h"
#include "console/ListingOptions.h"
#include "console/listing/Servers.h"

namespace larkspan::console {

CommandRun AddServersCommand(CLI::App& app) {
  const auto options = std::make_shared<ListingOptions>();
  CLI::App* const command =
      app.add_subcommand("servers", "Lists the servers that the user's configuration knows");
  AddListingOptions(*command, *options);
  command->footer(
      "Exit code: 0 listed, 2 could not run, 4 stopped, 5 not whole; what there is is shown\n"
      "Example:\n  larkspan-console servers --csv --to D:\\servers.csv\n");
  return [options] { return RunListingCommand(*options, KnownServers()); };
}

}  // namespace larkspan::console
