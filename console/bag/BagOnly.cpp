#include "console/bag/BagOnly.h"

#include <optional>
#include <stdexcept>

#include "console/bag/Bag.h"
#include "console/bag/BagText.h"
#include "console/show/FileProgressLine.h"
#include "console/show/Output.h"
#include "console/show/Sentences.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

// No value, and a sentence, when the folder cannot be judged.
std::optional<BagVerdict> Judge(const std::string& folder, Output& output, bool showsProgress,
                                std::string& whyNot) {
  FileProgressLine line(output, "Checking");
  VerifyProgress progress;
  if (showsProgress) progress = line.Watch();
  std::optional<BagVerdict> verdict;
  try {
    verdict = JudgeBag(Utf8ToWide(folder), progress, whyNot);
  } catch (const std::runtime_error& error) {
    whyNot = error.what();
  }
  line.Clear();
  return verdict;
}

ExitCode Refuse(const std::string& folder, bool json, const std::string& whyNot, Output& output) {
  const ExitCode code = ExitCode::kCouldNotRun;
  Output(STD_ERROR_HANDLE).Write(ErrorText(folder + ": " + whyNot));
  if (json) {
    output.Write(JsonText({{"folder", folder},
                           {"verdict", "none"},
                           {"exitCode", static_cast<int>(code)},
                           {"reason", whyNot}},
                          -1) +
                 "\n");
  }
  return code;
}

}  // namespace

ExitCode RunBagOnly(const std::string& folder, bool json, bool quiet) {
  Output output(STD_OUTPUT_HANDLE);
  std::string whyNot;
  const bool showsProgress = output.IsTerminal() && !json && !quiet;
  const std::optional<BagVerdict> verdict = Judge(folder, output, showsProgress, whyNot);
  if (!verdict) return Refuse(folder, json, whyNot, output);
  const ExitCode code = verdict->IsValid() ? ExitCode::kWhole : ExitCode::kIncomplete;
  if (json) {
    Json object = {{"folder", folder},
                   {"verdict", verdict->IsValid() ? "valid" : "invalid"},
                   {"exitCode", static_cast<int>(code)}};
    object["bag"] = BagToJson(*verdict);
    output.Write(JsonText(object, -1) + "\n");
  } else if (!quiet) {
    output.Write(BagText(*verdict));
  }
  return code;
}

}  // namespace larkspan::console
