#include <CLI/CLI.hpp>

#include "console/Command.h"

namespace larkspan::console {

CommandRun AddVerifyCommand(CLI::App& app) {
  app.add_subcommand("verify", "");
  return [] { return ExitCode::kCouldNotRun; };
}

}  // namespace larkspan::console
