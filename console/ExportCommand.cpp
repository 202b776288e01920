// larkspan-console export
#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Wipe.h"
#include "console/Command.h"
#include "console/CommandLine.h"
#include "console/ExportOptions.h"
#include "console/follow/EarlierRun.h"
#include "console/follow/Export.h"

namespace larkspan::console {

namespace {

void AddFolderOptions(CLI::App& command, ExportRequest& request) {
  CLI::Option* const atomic =
      command.add_flag("--atomic", request.atomic,
                       "Export beside the folder, and give it its name when all is accounted for");
  command
      .add_flag("--confirm", request.confirm,
                "Wait for the line 'place' or 'leave' on standard input before the name is given")
      ->needs(atomic);
  command.add_flag("--resume", request.resume, "Go on with an export that was cut off");
}

ExitCode RunCommand(ExportOptions& options, const std::vector<std::string>& arguments) {
  ExportRequest& request = options.request;
  if (const std::string fault = TakeValues(options); !fault.empty()) {
    return Refuse(ExitCode::kUsage, fault);
  }
  if (request.out.empty()) return Refuse(ExitCode::kUsage, "--out is empty");
  const std::string fault = AdoptEarlierRun(request);
  if (!fault.empty()) return Refuse(ExitCode::kCouldNotRun, fault);
  if (request.path.empty()) return Refuse(ExitCode::kUsage, "--path is required");
  // The run that is taken up may be of the plain form.
  if (!request.archive && request.workers > 1)
    return Refuse(ExitCode::kUsage, "--workers is not for the plain form");
  // From here on Ctrl+C does not end this program, which might leave a terminal without its echo.
  StopRequests stops;
  std::optional<LineSource> input;
  std::wstring password;
  if (const auto code = TakeIdentity(request.idFile, options.password, stops, input, password)) {
    return *code;
  }
  if (request.stopOnStdinEnd)
    InputSource(input).CallAtEnd([] { StopRequests::AskCurrent("input"); });
  const std::unique_ptr<RunDisplay> display = MakeRunDisplay(options.display.Mode());
  const ExportSurroundings surroundings{*display, stops, input, arguments, password};
  const ExitCode code = RunExport(request, surroundings);
  Wipe(password);
  return code;
}

}  // namespace

CommandRun AddExportCommand(CLI::App& app, const std::vector<std::string>& arguments) {
  CLI::App* const command = app.add_subcommand(
      "export", "Export a database into a folder, show the work, and account for every note");
  const auto options = std::make_shared<ExportOptions>();
  ExportRequest& request = options->request;
  AddText(*command, "--server", request.server, "Server of the database; without it, this machine");
  AddText(*command, "--path", request.path, "Path of the database");
  AddText(*command, "--out", request.out, "Folder to export into; new or empty")->required();
  AddContentOptions(*command, *options);
  AddEndOptions(*command, *options);
  AddFolderOptions(*command, request);
  AddDisplayOptions(*command, options->display);
  command->footer(
      "Example:\n  larkspan-console export --server Mill/Example --path archive\\orders.nsf "
      "--out D:\\export\\orders\n");
  return [options, arguments] { return RunCommand(*options, arguments); };
}

}  // namespace larkspan::console
