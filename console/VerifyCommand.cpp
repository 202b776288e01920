// verify: accounts for each note of an output folder, and says what came out.
#include <CLI/CLI.hpp>
#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>

#include "console/CheckWatch.h"
#include "console/Command.h"
#include "console/CommandLine.h"
#include "console/account/AccountJson.h"
#include "console/account/AccountText.h"
#include "console/bag/BagOnly.h"
#include "console/bag/BagText.h"
#include "console/bag/VerifyExport.h"
#include "console/show/Output.h"
#include "console/show/Sentences.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

struct VerifyOptions {
  std::string folder;
  bool json = false;
  bool quiet = false;
  bool bagOnly = false;
};

ExitCode RefuseFolder(const VerifyOptions& options, ExitCode code, const std::string& whyNot) {
  Output(STD_ERROR_HANDLE).Write(ErrorText(options.folder + ": " + whyNot));
  if (options.json) {
    const Json json = {{"folder", options.folder},
                       {"verdict", "none"},
                       {"exitCode", static_cast<int>(code)},
                       {"reason", whyNot}};
    Output(STD_OUTPUT_HANDLE).Write(JsonText(json, -1) + "\n");
  }
  return code;
}

void Show(const VerifyOptions& options, const ExportVerdict& verdict, Output& output) {
  if (options.json) {
    Json json = {{"folder", options.folder}};
    json.update(AccountToJson(verdict.account));
    if (verdict.bag) json["bag"] = BagToJson(*verdict.bag);
    output.Write(JsonText(json, -1) + "\n");
  } else if (!options.quiet) {
    output.Write(AccountText(verdict.account, verdict.bag ? SealedText(*verdict.bag) : ""));
  }
}

// A program that ends by an exception has an exit code that means losses.
std::optional<ExportVerdict> Verify(const VerifyOptions& options, CheckWatch& watch,
                                    std::string& whyNot) {
  try {
    return VerifyExport(Utf8ToWide(options.folder),
                        {watch.Watch("Summing"), watch.Watch("Checking")}, whyNot);
  } catch (const std::exception& exception) {
    whyNot = std::string("The folder could not be judged: ") + exception.what();
    return std::nullopt;
  }
}

ExitCode RunVerify(const VerifyOptions& options) {
  if (options.bagOnly) return RunBagOnly(options.folder, options.json, options.quiet);
  CheckWatch watch(!options.json && !options.quiet);
  std::string whyNot;
  const std::optional<ExportVerdict> verdict = Verify(options, watch, whyNot);
  watch.Clear();
  if (!verdict) {
    const ExitCode code = watch.IsStopped() ? ExitCode::kStopped : ExitCode::kCouldNotRun;
    return RefuseFolder(options, code, whyNot);
  }
  Show(options, *verdict, watch.output());
  return verdict->account.Verdict();
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
      "Exit code: 0 whole, 2 no export there, 3 losses that are listed, 4 stopped,\n"
      "5 not accounted for, or a bag that is not valid\n"
      "Example:\n  larkspan-console verify D:\\export\\ada\n");
  return [options] { return RunVerify(*options); };
}

}  // namespace larkspan::console
