#include <CLI/CLI.hpp>

#include "console/Command.h"

namespace larkspan::console {

CommandRun AddReportCommand(CLI::App& app) {
  app.add_subcommand("report", "");
  return [] { return ExitCode::kCouldNotRun; };
}

}  // namespace larkspan::console
