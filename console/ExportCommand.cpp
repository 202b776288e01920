// larkspan-console export
#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/Wipe.h"
#include "console/Command.h"
#include "console/CommandLine.h"
#include "console/follow/EarlierRun.h"
#include "console/follow/Export.h"
#include "console/follow/Password.h"
#include "console/show/MakeRunDisplay.h"
#include "console/show/Output.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

struct ExportOptions {
  ExportRequest request;
  PasswordSources password;
  std::string stall;
  std::string maxLosses;
  std::uint32_t giveUp = 0;
  bool designOnly = false;
  bool noViews = false;
  bool json = false;
  bool quiet = false;
};

// "90s", "10m", "2h"; a number alone is seconds. At least a second.
std::optional<std::uint64_t> Milliseconds(const std::string& text) {
  double number = 0;
  const char* const end = text.data() + text.size();
  const auto [unit, error] = std::from_chars(text.data(), end, number);
  const std::string_view word(unit, static_cast<std::size_t>(end - unit));
  if (error != std::errc() || !std::isfinite(number) || number > 1e6) return std::nullopt;
  const double seconds = word == "h"                   ? 3600
                         : word == "m"                 ? 60
                         : word == "s" || word.empty() ? 1
                                                       : 0;
  if (number * seconds < 1) return std::nullopt;
  return static_cast<std::uint64_t>(number * seconds * 1000);
}

// "5" or "2.5%".
std::optional<LossLimit> ParseLossLimit(std::string text) {
  LossLimit limit;
  limit.isPercentage = text.ends_with('%');
  if (limit.isPercentage) text.pop_back();
  const char* const end = text.data() + text.size();
  const auto [rest, error] = std::from_chars(text.data(), end, limit.value);
  if (error != std::errc() || rest != end || !std::isfinite(limit.value) || limit.value < 0) {
    return std::nullopt;
  }
  return limit;
}

void AddExporterOptions(CLI::App& command, ExportOptions& options) {
  ExportRequest& request = options.request;
  AddText(command, "--server", request.server, "Server of the database; without it, this machine");
  AddText(command, "--path", request.path, "Path of the database");
  AddText(command, "--out", request.out, "Folder to export into; new or empty")->required();
  AddText(command, "--id-file", request.idFile, "ID file to work with");
  AddText(command, "--password-file", options.password.file,
          "File whose first line is the password of the ID file");
  command.add_flag("--password-stdin", options.password.standardInput,
                   "Take the password from the first line of standard input");
  command.add_flag("--full-access", request.fullAccess, "Open with full administrator access");
  command.add_flag("--no-views", options.noViews, "Leave the views out");
  command.add_flag("--design-only", options.designOnly,
                   "Export the design notes alone, without pictures, into one folder");
  AddText(command, "--notes-ini", request.notesIni, "Configuration file of the Notes library");
  command.add_flag("--debug", request.debug, "Write debug lines into log.txt");
}

void AddEndOptions(CLI::App& command, ExportOptions& options) {
  ExportRequest& request = options.request;
  AddText(command, "--stall", options.stall,
          "End a worker that makes no progress for so long: 90s, 10m, 2h");
  command
      .add_option("--give-up", options.giveUp,
                  "End the run when so many notes in a row are lost for the same cause")
      ->check(CLI::PositiveNumber);
  AddText(command, "--max-losses", options.maxLosses,
          "Fail when more is lost: a number, or a share such as 2%");
  command.add_flag("--stop-on-stdin-end", request.stopOnStdinEnd,
                   "Stop when standard input ends or nobody reads standard output");
  CLI::Option* const atomic =
      command.add_flag("--atomic", request.atomic,
                       "Export beside the folder, and give it its name when all is accounted for");
  command
      .add_flag("--confirm", request.confirm,
                "Wait for the line 'place' or 'leave' on standard input before the name is given")
      ->needs(atomic);
  command.add_flag("--resume", request.resume, "Go on with an export that was cut off");
}

void AddDisplayOptions(CLI::App& command, ExportOptions& options) {
  CLI::Option* const json =
      command.add_flag("--json", options.json, "Write one event a line, as JSON");
  command.add_flag("--quiet", options.quiet, "Write nothing but what went wrong")->excludes(json);
}

ExitCode Refuse(ExitCode code, const std::string& why) {
  Output(STD_ERROR_HANDLE).Write("larkspan-console: " + why + "\n");
  return code;
}

// Empty, or what is wrong with a value.
std::string TakeValues(ExportOptions& options) {
  ExportRequest& request = options.request;
  request.archive = !options.designOnly;
  request.views = request.archive && !options.noViews;
  if (options.giveUp > 0) request.giveUp = options.giveUp;
  if (!options.stall.empty()) {
    request.stallMilliseconds = Milliseconds(options.stall);
    if (!request.stallMilliseconds) return "--stall takes a time such as 90s, 10m or 2h";
  }
  if (!options.maxLosses.empty()) {
    request.maxLosses = ParseLossLimit(options.maxLosses);
    if (!request.maxLosses) return "--max-losses takes a number, or a share such as 2%";
  }
  if (request.out.empty()) return "--out is empty";
  return {};
}

ExitCode RunCommand(ExportOptions& options, const std::vector<std::string>& arguments) {
  if (const std::string fault = TakeValues(options); !fault.empty()) {
    return Refuse(ExitCode::kUsage, fault);
  }
  const std::string fault = AdoptEarlierRun(options.request);
  if (!fault.empty()) return Refuse(ExitCode::kCouldNotRun, fault);
  if (options.request.path.empty()) return Refuse(ExitCode::kUsage, "--path is required");
  std::optional<LineSource> input;
  const auto inputSource = [&input]() -> LineSource& {
    if (!input) input = LineSource::StandardInput();
    return *input;
  };
  std::wstring password;
  if (options.request.idFile.empty()) {
    ForgetPasswordVariable();
  } else {
    std::string whyNot;
    password = TakePassword(
        options.password, [&] { return inputSource().NextLine(); }, whyNot);
    if (password.empty()) return Refuse(ExitCode::kUsage, whyNot);
  }
  StopRequests stops;
  if (options.request.stopOnStdinEnd)
    inputSource().CallAtEnd([] { StopRequests::AskCurrent("input"); });
  const DisplayMode mode = options.json    ? DisplayMode::kJson
                           : options.quiet ? DisplayMode::kQuiet
                                           : DisplayMode::kTerminalOrPlain;
  const std::unique_ptr<RunDisplay> display = MakeRunDisplay(mode);
  const ExportSurroundings surroundings{*display, stops, input, arguments, password};
  const ExitCode code = RunExport(options.request, surroundings);
  Wipe(password);
  return code;
}

}  // namespace

CommandRun AddExportCommand(CLI::App& app, const std::vector<std::string>& arguments) {
  CLI::App* const command = app.add_subcommand(
      "export", "Export a database into a folder, show the work, and account for every note");
  const auto options = std::make_shared<ExportOptions>();
  AddExporterOptions(*command, *options);
  AddEndOptions(*command, *options);
  AddDisplayOptions(*command, *options);
  command->footer(
      "Example:\n  larkspan-console export --server Mill/Example --path archive\\orders.nsf "
      "--out D:\\export\\orders\n");
  return [options, arguments] { return RunCommand(*options, arguments); };
}

}  // namespace larkspan::console
