// databases: lists the databases of a server.
#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "console/Command.h"
#include "console/CommandLine.h"
#include "console/ListingOptions.h"
#include "console/listing/Databases.h"

namespace larkspan::console {

namespace {

struct DatabasesOptions {
  std::string server;
  ListingOptions listing;
};

}  // namespace

CommandRun AddDatabasesCommand(CLI::App& app) {
  const auto options = std::make_shared<DatabasesOptions>();
  CLI::App* const command =
      app.add_subcommand("databases", "Lists the databases of a server, with titles and sizes");
  AddText(*command, "--server", options->server,
          "Server whose databases are listed; without it, this machine");
  AddListingOptions(*command, options->listing);
  command->footer(
      "Exit code: 0 listed, 2 could not run, 4 stopped, 5 not whole; what there is is shown\n"
      "Example:\n  larkspan-console databases --server Mill/Example --csv --to D:\\mill.csv\n");
  return [options] { return RunListingCommand(options->listing, DatabasesOf(options->server)); };
}

}  // namespace larkspan::console
