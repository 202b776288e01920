// The commands of the console program. Each describes its options to the command line and, when it
// was the one that was called, runs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "console/ExitCode.h"

namespace CLI {
class App;
}

namespace larkspan::console {

using CommandRun = std::function<ExitCode()>;

// Each adds its subcommand and gives what runs it once the command line is parsed. `arguments` are
// all of the command line's, as they were given.
CommandRun AddExportCommand(CLI::App& app, const std::vector<std::string>& arguments);
CommandRun AddVerifyCommand(CLI::App& app);
CommandRun AddReportCommand(CLI::App& app);
CommandRun AddSealCommand(CLI::App& app);
CommandRun AddDatabasesCommand(CLI::App& app);
CommandRun AddServersCommand(CLI::App& app);
CommandRun AddBatchCommand(CLI::App& app);
CommandRun AddDoctorCommand(CLI::App& app);

}  // namespace larkspan::console
