// doctor: run first on a machine; says what an export would meet there.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "base/Wipe.h"
#include "console/Command.h"
#include "console/CommandLine.h"
#include "console/ExportOptions.h"
#include "console/doctor/Examination.h"
#include "console/show/Output.h"
#include "console/text/Durations.h"

namespace larkspan::console {

namespace {

struct DoctorOptions {
  DoctorRequest request;
  PasswordSources password;
  std::string timeout;
  DisplayOptions display;
};

std::unique_ptr<DoctorDisplay> MakeDisplay(const DoctorOptions& options, Output& output,
                                           Output& errors) {
  if (options.display.json) return MakeDoctorJson(output);
  return options.display.quiet ? MakeQuietDoctor(errors) : MakeDoctorTable(output);
}

ExitCode CodeOf(const std::vector<Check>& checks, const StopRequests& stops) {
  if (stops.Count() > 0) return ExitCode::kStopped;
  const bool failed = std::any_of(checks.begin(), checks.end(), [](const Check& check) {
    return check.finding.result == CheckResult::kFailed;
  });
  return failed ? ExitCode::kCouldNotRun : ExitCode::kWhole;
}

ExitCode RunDoctor(DoctorOptions& options) {
  if (!options.timeout.empty()) {
    const auto timeout = ParseMilliseconds(options.timeout);
    if (!timeout) return Refuse(ExitCode::kUsage, "--timeout takes a time such as 90s, 10m or 2h");
    options.request.timeoutMilliseconds = *timeout;
  }
  // From here on Ctrl+C does not end this program, which would leave its folders behind.
  StopRequests stops;
  std::optional<LineSource> input;
  std::wstring password;
  if (const auto code =
          TakeIdentity(options.request.run.idFile, options.password, stops, input, password)) {
    return *code;
  }
  Output output(STD_OUTPUT_HANDLE);
  Output errors(STD_ERROR_HANDLE);
  const std::unique_ptr<DoctorDisplay> display = MakeDisplay(options, output, errors);
  const std::vector<Check> checks = Examine(options.request, password, stops, *display);
  Wipe(password);
  const ExitCode code = CodeOf(checks, stops);
  display->End(checks, code);
  return code;
}

}  // namespace

CommandRun AddDoctorCommand(CLI::App& app) {
  const auto options = std::make_shared<DoctorOptions>();
  ExportRequest& run = options->request.run;
  CLI::App* const command = app.add_subcommand(
      "doctor", "Looks at this machine: can an export work here? Changes and leaves nothing");
  CLI::Option* const path =
      AddText(*command, "--path", run.path, "Path of a database to open and read a few notes of");
  AddText(*command, "--server", run.server, "Server of the database; without it, this machine")
      ->needs(path);
  AddText(*command, "--out", run.out, "Folder that an export is to go into");
  AddIdentityOptions(*command, run.idFile, options->password);
  command->add_flag("--full-access", run.fullAccess, "Open with full administrator access");
  AddText(*command, "--notes-ini", run.notesIni, "Configuration file of the Notes library");
  AddText(*command, "--timeout", options->timeout,
          "End a trial that gives no sign for so long: 90s, 10m, 2h; 2m where it is left out");
  CLI::Option* const json = command->add_flag("--json", options->display.json,
                                              "One JSON object at the end instead of a table");
  command->add_flag("--quiet", options->display.quiet, "Write nothing but what failed")
      ->excludes(json);
  command->footer(
      "Exit code: 0 nothing failed, 2 a check failed, 4 stopped\n"
      "Example:\n  larkspan-console doctor --server Mill/Example --path archive\\orders.nsf "
      "--out D:\\export\\orders\n");
  return [options] { return RunDoctor(*options); };
}

}  // namespace larkspan::console
