#include "console/ExportOptions.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <cmath>

#include "console/CommandLine.h"
#include "console/show/Output.h"
#include "console/text/Durations.h"

namespace larkspan::console {

namespace {

// More wait for each other, at the server or at this machine's disk.
constexpr std::uint32_t kMostWorkers = 16;

constexpr std::uint32_t kMostLosses = 1'000'000;  // In a row.

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

}  // namespace

DisplayMode DisplayOptions::Mode() const {
  return json ? DisplayMode::kJson : quiet ? DisplayMode::kQuiet : DisplayMode::kTerminalOrPlain;
}

void AddDisplayOptions(CLI::App& command, DisplayOptions& options) {
  CLI::Option* const json =
      command.add_flag("--json", options.json, "Write one event a line, as JSON");
  command.add_flag("--quiet", options.quiet, "Write nothing but what went wrong")->excludes(json);
}

void AddIdentityOptions(CLI::App& command, std::string& idFile, PasswordSources& sources) {
  AddText(command, "--id-file", idFile, "ID file to work with");
  AddText(command, "--password-file", sources.file,
          "File whose first line is the password of the ID file");
  command.add_flag("--password-stdin", sources.standardInput,
                   "Take the password from the first line of standard input");
}

std::optional<ExitCode> TakeIdentity(const std::string& idFile, const PasswordSources& sources,
                                     const StopRequests& stops, std::optional<LineSource>& input,
                                     std::wstring& password) {
  if (idFile.empty()) {
    ForgetPasswordVariable();
    return std::nullopt;
  }
  std::string whyNot;
  password = TakePassword(
      sources, [&] { return InputSource(input).NextLine(); }, whyNot);
  if (stops.Count() > 0) return Refuse(ExitCode::kStopped, "stopped by the user");
  if (password.empty()) return Refuse(ExitCode::kUsage, whyNot);
  return std::nullopt;
}

void AddContentOptions(CLI::App& command, ExportOptions& options) {
  ExportRequest& request = options.request;
  AddIdentityOptions(command, request.idFile, options.password);
  command.add_flag("--full-access", request.fullAccess, "Open with full administrator access");
  command.add_flag("--no-views", options.noViews, "Leave the views out");
  CLI::Option* const designOnly =
      command.add_flag("--design-only", options.designOnly,
                       "Export the design notes alone, without pictures, into one folder");
  command
      .add_option("--workers", request.workers,
                  "So many workers export at once: for a large database on a server")
      ->check(CLI::Range(1u, kMostWorkers))
      ->excludes(designOnly);
  AddText(command, "--notes-ini", request.notesIni, "Configuration file of the Notes library");
  command.add_flag("--debug", request.debug, "Write debug lines into log.txt");
}

void AddEndOptions(CLI::App& command, ExportOptions& options) {
  AddText(command, "--stall", options.stall,
          "End a worker that makes no progress for so long: 90s, 10m, 2h");
  command
      .add_option("--give-up", options.giveUp,
                  "End the run when so many notes in a row are lost for the same cause")
      ->check(CLI::Range(1u, kMostLosses));
  AddText(command, "--max-losses", options.maxLosses,
          "Fail when more is lost: a number, or a share such as 2%");
  command.add_flag("--stop-on-stdin-end", options.request.stopOnStdinEnd,
                   "Stop when standard input ends or nobody reads standard output");
}

std::string TakeValues(ExportOptions& options) {
  ExportRequest& request = options.request;
  request.archive = !options.designOnly;
  request.views = request.archive && !options.noViews;
  if (options.giveUp > 0) request.giveUp = options.giveUp;
  if (!options.stall.empty()) {
    request.stallMilliseconds = ParseMilliseconds(options.stall);
    if (!request.stallMilliseconds) return "--stall takes a time such as 90s, 10m or 2h";
  }
  if (!options.maxLosses.empty()) {
    request.maxLosses = ParseLossLimit(options.maxLosses);
    if (!request.maxLosses) return "--max-losses takes a number, or a share such as 2%";
  }
  return {};
}

LineSource& InputSource(std::optional<LineSource>& input) {
  if (!input) input = LineSource::StandardInput();
  return *input;
}

ExitCode Refuse(ExitCode code, const std::string& why) {
  Output(STD_ERROR_HANDLE).Write("larkspan-console: " + why + "\n");
  return code;
}

}  // namespace larkspan::console
