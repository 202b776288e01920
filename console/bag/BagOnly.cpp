#include "console/bag/BagOnly.h"

#include <optional>
#include <stdexcept>

#include "console/CheckWatch.h"
#include "console/bag/Bag.h"
#include "console/bag/BagText.h"
#include "console/show/Sentences.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

// No value, and a sentence, when the folder cannot be judged.
std::optional<BagVerdict> Judge(const std::string& folder, CheckWatch& watch, std::string& whyNot) {
  std::optional<BagVerdict> verdict;
  try {
    verdict = JudgeBag(Utf8ToWide(folder), watch.Watch("Checking"), whyNot);
  } catch (const std::runtime_error& error) {
    whyNot = error.what();
  }
  watch.Clear();
  return verdict;
}

ExitCode Refuse(const std::string& folder, bool json, const std::string& whyNot,
                CheckWatch& watch) {
  const ExitCode code = watch.IsStopped() ? ExitCode::kStopped : ExitCode::kCouldNotRun;
  Output(STD_ERROR_HANDLE).Write(ErrorText(folder + ": " + whyNot));
  if (json) {
    watch.output().Write(JsonText({{"folder", folder},
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
  CheckWatch watch(!json && !quiet);
  std::string whyNot;
  const std::optional<BagVerdict> verdict = Judge(folder, watch, whyNot);
  if (!verdict) return Refuse(folder, json, whyNot, watch);
  const ExitCode code = verdict->IsValid() ? ExitCode::kWhole : ExitCode::kIncomplete;
  if (json) {
    Json object = {{"folder", folder},
                   {"verdict", verdict->IsValid() ? "valid" : "invalid"},
                   {"exitCode", static_cast<int>(code)}};
    object["bag"] = BagToJson(*verdict);
    watch.output().Write(JsonText(object, -1) + "\n");
  } else if (!quiet) {
    watch.output().Write(BagText(*verdict));
  }
  return code;
}

}  // namespace larkspan::console
