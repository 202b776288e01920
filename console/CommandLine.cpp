#include "console/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <numeric>
#include <sstream>

#include "console/Command.h"
#include "console/show/Output.h"

namespace larkspan::console {

namespace {

// How many letters must be put in, taken out or replaced to make one word of the other.
std::size_t EditDistance(const std::string& from, const std::string& to) {
  std::vector<std::size_t> row(to.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (std::size_t i = 0; i < from.size(); ++i) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < to.size(); ++j) {
      const std::size_t replaced = diagonal + (from[i] == to[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

std::vector<std::string> CommandNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands(nullptr)) names.push_back(command->get_name());
  return names;
}

std::vector<std::string> OptionNames(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options())
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  return names;
}

const CLI::App& CalledCommand(const CLI::App& app) {
  const std::vector<CLI::App*> called = app.get_subcommands();
  return called.empty() ? app : *called.front();
}

ExitCode RefuseWord(const CLI::App& app, const std::string& given) {
  const CLI::App& command = CalledCommand(app);
  const std::string word = given.substr(0, given.find('='));
  const bool isOption = word.starts_with("-");
  const std::string nearest =
      NearestWord(word, isOption ? OptionNames(command) : CommandNames(app));
  std::string message = "larkspan-console: unknown " +
                        std::string(isOption           ? "option"
                                    : &command == &app ? "command"
                                                       : "word") +
                        " '" + word + "'";
  if (!nearest.empty()) message += "; did you mean '" + nearest + "'?";
  const std::string called = &command == &app ? "" : " " + command.get_name();
  message += "\nTry 'larkspan-console" + called + " --help'.\n";
  Output(STD_ERROR_HANDLE).Write(message);
  return ExitCode::kUsage;
}

ExitCode AnswerParseError(const CLI::App& app, const CLI::ParseError& error) {
  std::ostringstream output;
  std::ostringstream faults;
  if (app.exit(error, output, faults) == 0) {
    Output(STD_OUTPUT_HANDLE).Write(output.str());
    return ExitCode::kWhole;
  }
  Output(STD_ERROR_HANDLE).Write("larkspan-console: " + std::string(error.what()) + "\n");
  return ExitCode::kUsage;
}

}  // namespace

std::string NearestWord(const std::string& word, const std::vector<std::string>& known) {
  std::string nearest;
  std::size_t least = std::max<std::size_t>(2, word.size() / 3) + 1;
  for (const std::string& candidate : known) {
    const std::size_t distance = EditDistance(word, candidate);
    if (distance >= least) continue;
    least = distance;
    nearest = candidate;
  }
  return nearest;
}

CLI::Option* AddText(CLI::App& command, const std::string& name, std::string& text,
                     const std::string& description) {
  return command.add_option(name, text, description)
      ->check([](const std::string& value) {
        return value.starts_with("=") ? "a value may not begin with '='" : std::string();
      })
      ->multi_option_policy(CLI::MultiOptionPolicy::Throw);
}

ExitCode RunCommandLine(std::vector<std::string> arguments) {
  CLI::App app(
      "Exports a Notes database with larkspan.exe, shows the work, and says what came out.",
      "larkspan-console");
  app.allow_windows_style_options(false);
  app.set_version_flag("--version", "larkspan-console " LARKSPAN_VERSION);
  app.set_help_flag("--help", "Show this help and end");
  app.footer(
      "Example:\n  larkspan-console export --path mail\\ada.nsf --out D:\\export\\ada\n"
      "Each command has a help of its own: larkspan-console export --help\n");
  app.require_subcommand(1);
  const std::vector<std::pair<std::string, CommandRun>> commands = {
      {"export", AddExportCommand(app, arguments)},
      {"verify", AddVerifyCommand(app)},
      {"report", AddReportCommand(app)},
      {"seal", AddSealCommand(app)},
      {"databases", AddDatabasesCommand(app)},
      {"servers", AddServersCommand(app)},
      {"batch", AddBatchCommand(app)},
      {"doctor", AddDoctorCommand(app)},
  };
  std::reverse(arguments.begin(), arguments.end());
  app.allow_extras();
  for (CLI::App* command : app.get_subcommands(nullptr)) command->allow_extras();
  try {
    app.parse(arguments);
  } catch (const CLI::RequiredError& error) {
    // What is missing may be there under a word that nobody knows.
    const std::vector<std::string> left = app.remaining(true);
    return left.empty() ? AnswerParseError(app, error) : RefuseWord(app, left.front());
  } catch (const CLI::ParseError& error) {
    return AnswerParseError(app, error);
  }
  const std::vector<std::string> left = app.remaining(true);
  if (!left.empty()) return RefuseWord(app, left.front());
  for (const auto& [name, run] : commands)
    if (app.got_subcommand(name)) return run();
  return ExitCode::kUsage;
}

}  // namespace larkspan::console
