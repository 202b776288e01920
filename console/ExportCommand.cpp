#include <CLI/CLI.hpp>

#include "console/Command.h"

namespace larkspan::console {

CommandRun AddExportCommand(CLI::App& app) {
  app.add_subcommand("export", "");
  return [] { return ExitCode::kCouldNotRun; };
}

}  // namespace larkspan::console
