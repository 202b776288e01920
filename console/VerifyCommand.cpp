// verify: accounts for each note of an output folder, and says what came out.
#include <CLI/CLI.hpp>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "console/Command.h"
#include "console/CommandLine.h"
#include "console/account/AccountJson.h"
#include "console/account/AccountText.h"
#include "console/account/Verify.h"
#include "console/bag/BagOnly.h"
#include "console/show/FileProgressLine.h"
#include "console/show/Output.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

struct VerifyOptions {
  std::string folder;
  bool json = false;
  bool quiet = false;
  bool bagOnly = false;
};

ExitCode RefuseFolder(const VerifyOptions& options, const std::string& whyNot) {
  const ExitCode code = ExitCode::kCouldNotRun;
  Output(STD_ERROR_HANDLE).Write("larkspan-console: " + options.folder + ": " + whyNot + "\n");
  if (options.json) {
    const Json json = {{"folder", options.folder},
                       {"verdict", "none"},
                       {"exitCode", static_cast<int>(code)},
                       {"reason", whyNot}};
    Output(STD_OUTPUT_HANDLE).Write(JsonText(json, -1) + "\n");
  }
  return code;
}

void Show(const VerifyOptions& options, const Account& account, Output& output) {
  if (options.json) {
    Json json = {{"folder", options.folder}};
    json.update(AccountToJson(account));
    output.Write(JsonText(json, -1) + "\n");
  } else if (!options.quiet) {
    output.Write(AccountText(account));
  }
}

// A program that ends by an exception has an exit code that means losses.
std::optional<Account> Verify(const VerifyOptions& options, const VerifyProgress& progress,
                              std::string& whyNot) {
  try {
    return VerifyFolder(Utf8ToWide(options.folder), progress, whyNot);
  } catch (const std::exception& exception) {
    whyNot = std::string("The folder could not be judged: ") + exception.what();
    return std::nullopt;
  }
}

ExitCode RunVerify(const VerifyOptions& options) {
  if (options.bagOnly) return RunBagOnly(options.folder, options.json, options.quiet);
  Output output(STD_OUTPUT_HANDLE);
  FileProgressLine line(output, "Checking");
  VerifyProgress progress;
  if (output.IsTerminal() && !options.json && !options.quiet) progress = line.Watch();
  std::string whyNot;
  const std::optional<Account> account = Verify(options, progress, whyNot);
  line.Clear();
  if (!account) return RefuseFolder(options, whyNot);
  Show(options, *account, output);
  return account->Verdict();
}

}  // namespace

CommandRun AddVerifyCommand(CLI::App& app) {
  const auto options = std::make_shared<VerifyOptions>();
  CLI::App* const command = app.add_subcommand(
      "verify", "Accounts for every note of an export, from what the disk holds");
  AddText(*command, "OUT", options->folder, "The output folder of an export")->required();
  command->add_flag("--json", options->json, "One JSON object on standard output instead of text");
  command->add_flag("--quiet", options->quiet, "No text; the exit code says it");
  command->add_flag("--bag-only", options->bagOnly,
                    "Judge any bag, whatever it holds: 0 valid, 5 invalid");
  command->footer(
      "Exit code: 0 whole, 2 no export there, 3 losses that are listed, 5 not accounted for\n"
      "Example:\n  larkspan-console verify D:\\export\\ada\n");
  return [options] { return RunVerify(*options); };
}

}  // namespace larkspan::console
