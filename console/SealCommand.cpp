// seal: makes the folder of a finished export a bag, in place.
#include <CLI/CLI.hpp>
#include <memory>
#include <string>

#include "console/CheckWatch.h"
#include "console/Command.h"
#include "console/CommandLine.h"
#include "console/account/AccountJson.h"
#include "console/account/AccountText.h"
#include "console/bag/BagText.h"
#include "console/bag/Seal.h"
#include "console/follow/OutputFolder.h"
#include "console/show/Output.h"
#include "console/show/Sentences.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

struct SealOptions {
  std::string folder;
  bool json = false;
  bool quiet = false;
};

Json ResultToJson(const SealOptions& options, const SealResult& result) {
  Json json = {{"folder", options.folder},
               {"sealed", result.reason.empty()},
               {"wasSealed", result.wasSealed},
               {"exitCode", static_cast<int>(result.code)}};
  if (!result.reason.empty()) json["reason"] = result.reason;
  json["payload"] = {{"files", result.payloadFiles}, {"bytes", result.payloadBytes}};
  if (result.account) json["account"] = AccountToJson(*result.account);
  if (result.bag) json["bag"] = BagToJson(*result.bag);
  return json;
}

std::string ResultText(const SealResult& result) {
  std::string text =
      result.wasSealed ? "The folder is a bag already, and valid: " : "The folder is a bag now: ";
  text += CountText(result.payloadFiles, "file", "files") + " with " +
          BytesText(result.payloadBytes) + ".\n";
  return text + VerdictText(*result.account) + "\n";
}

void Show(const SealOptions& options, const SealResult& result, Output& output) {
  if (!result.reason.empty())
    Output(STD_ERROR_HANDLE).Write(ErrorText(options.folder + ": " + result.reason));
  if (options.json)
    output.Write(JsonText(ResultToJson(options, result), -1) + "\n");
  else if (result.reason.empty() && !options.quiet)
    output.Write(ResultText(result));
}

ExitCode RunSeal(const SealOptions& options) {
  CheckWatch watch(!options.json && !options.quiet);
  const std::wstring folder = WholePath(options.folder);
  const FolderLock lock(folder);
  SealResult result;
  if (lock.IsHeld())
    result = SealFolder(folder, {watch.Watch("Checking"), watch.Watch("Summing"), {}});
  else
    result.reason = "Another larkspan-console is at work there.";
  watch.Clear();
  Show(options, result, watch.output());
  return result.code;
}

}  // namespace

CommandRun AddSealCommand(CLI::App& app) {
  const auto options = std::make_shared<SealOptions>();
  CLI::App* const command = app.add_subcommand(
      "seal", "Makes the folder of an export a bag (RFC 8493), with the sums of its files");
  AddText(*command, "OUT", options->folder, "The output folder of an export")->required();
  command->add_flag("--json", options->json, "One JSON object on standard output instead of text");
  command->add_flag("--quiet", options->quiet, "No text; the exit code says it");
  command->footer(
      "Exit code: 0 sealed and whole, 2 nothing there to seal, 3 sealed with losses that are\n"
      "listed, 4 stopped, 5 not accounted for, or broken off: call it again, and it goes on\n"
      "Example:\n  larkspan-console seal D:\\export\\ada\n");
  return [options] { return RunSeal(*options); };
}

}  // namespace larkspan::console
