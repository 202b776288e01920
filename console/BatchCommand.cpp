// larkspan-console batch
#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Wipe.h"
#include "console/Command.h"
#include "console/CommandLine.h"
#include "console/ExportOptions.h"
#include "console/batch/Batch.h"
#include "console/batch/MakeBatchDisplay.h"
#include "console/show/Output.h"

namespace larkspan::console {

namespace {

// The Notes library is loaded by two processes of each; no machine bears more of them.
constexpr std::size_t kMostJobs = 64;

struct BatchOptions {
  BatchRequest request;
  ExportOptions exports;
  std::size_t perServer = 0;
  std::size_t mostWorkers = 0;
};

// As many exports as their workers together allow. Empty, or what is wrong.
std::string TakeLimits(BatchOptions& options) {
  ScheduleLimits& limits = options.request.limits;
  if (options.perServer > 0) limits.perServer = options.perServer;
  if (options.mostWorkers == 0) return {};
  const std::size_t fitting = options.mostWorkers / options.exports.request.workers;
  if (fitting == 0) return "--most-workers is less than --workers";
  limits.jobs = std::min(limits.jobs, fitting);
  return {};
}

// The options of each export, as this program takes them again. The password is no one of them.
std::vector<std::string> ExportArguments(const ExportOptions& options) {
  const ExportRequest& request = options.request;
  std::vector<std::string> arguments;
  const auto addText = [&](const char* name, const std::string& text) {
    if (!text.empty()) arguments.insert(arguments.end(), {name, text});
  };
  const auto addFlag = [&](const char* name, bool isSet) {
    if (isSet) arguments.emplace_back(name);
  };
  addText("--id-file", request.idFile);
  addFlag("--full-access", request.fullAccess);
  addFlag("--no-views", options.noViews);
  addFlag("--design-only", options.designOnly);
  addText("--notes-ini", request.notesIni);
  addFlag("--debug", request.debug);
  addText("--stall", options.stall);
  if (options.giveUp > 0) addText("--give-up", std::to_string(options.giveUp));
  addText("--max-losses", options.maxLosses);
  if (request.workers > 1) addText("--workers", std::to_string(request.workers));
  return arguments;
}

ExitCode RunCommand(BatchOptions& options) {
  ExportOptions& exports = options.exports;
  BatchRequest& request = options.request;
  if (const std::string fault = TakeValues(exports); !fault.empty()) {
    return Refuse(ExitCode::kUsage, fault);
  }
  if (request.listFile.empty()) return Refuse(ExitCode::kUsage, "LIST is empty");
  if (request.root.empty()) return Refuse(ExitCode::kUsage, "--root is empty");
  if (const std::string fault = TakeLimits(options); !fault.empty()) {
    return Refuse(ExitCode::kUsage, fault);
  }
  request.wanted = exports.request;
  request.exportOptions = ExportArguments(exports);
  request.stopOnStdinEnd = exports.request.stopOnStdinEnd;
  StopRequests stops;
  std::optional<LineSource> input;
  std::wstring password;
  if (const auto code =
          TakeIdentity(exports.request.idFile, exports.password, stops, input, password)) {
    return *code;
  }
  if (request.stopOnStdinEnd)
    InputSource(input).CallAtEnd([] { StopRequests::AskCurrent("input"); });
  Output output(STD_OUTPUT_HANDLE);
  Output errors(STD_ERROR_HANDLE);
  const std::unique_ptr<BatchDisplay> display =
      MakeBatchDisplay(exports.display.Mode(), output, errors);
  const ExitCode code = RunBatch(request, {*display, stops, password});
  Wipe(password);
  return code;
}

}  // namespace

CommandRun AddBatchCommand(CLI::App& app) {
  CLI::App* const command = app.add_subcommand(
      "batch", "Export every database of a list, each into a folder of its own below a root");
  const auto options = std::make_shared<BatchOptions>();
  BatchRequest& request = options->request;
  AddText(*command, "LIST", request.listFile,
          "File of databases: what 'databases --csv' writes, or lines server!!path")
      ->required();
  AddText(*command, "--root", request.root, "Folder below which each database gets its own")
      ->required();
  command->add_option("--jobs", request.limits.jobs, "So many exports at once")
      ->check(CLI::Range(std::size_t{1}, kMostJobs));
  command
      ->add_option("--per-server", options->perServer,
                   "So many exports at once of databases of one server")
      ->check(CLI::Range(std::size_t{1}, kMostJobs));
  command
      ->add_option("--most-workers", options->mostWorkers,
                   "So many workers at once, those of all exports together")
      ->check(CLI::Range(std::size_t{1}, kMostJobs));
  AddContentOptions(*command, options->exports);
  AddEndOptions(*command, options->exports);
  AddDisplayOptions(*command, options->exports.display);
  command->footer(
      "Without --jobs one export at a time. Exit code, the worst of all: 0 whole, 3 done with\n"
      "losses, 2 some could not run, 5 some are incomplete, 4 stopped; 1 a wrong option\n"
      "Example:\n  larkspan-console batch databases.csv --root D:\\export --jobs 4\n"
      "The same command again goes on where it ended.\n");
  return [options] { return RunCommand(*options); };
}

}  // namespace larkspan::console
