// The run log, of which the audit report counts lines.
#include <algorithm>
#include <string>

#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "supervision/LogCounts.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/OutputFolder.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

constexpr std::size_t kPiece = 1022;

// Counts the lines, and the pieces of long lines, that begin with the words.
int CountLines(std::string_view text, std::string_view words) {
  int count = 0;
  while (!text.empty()) {
    if (text.starts_with(words)) ++count;
    const std::size_t line = std::min(text.find('\n'), text.size() - 1) + 1;
    text.remove_prefix(std::min(line, kPiece));
  }
  return count;
}

void CheckCounts(const LoggedCounts& counts, std::string_view log) {
  Require(counts.failed == CountLines(log, "#WARNING# - Major:"), "failures are counted");
  Require(counts.warnings == CountLines(log, "#WARNING# - Minor:"), "warnings are counted");
}

}  // namespace

}  // namespace larkspan::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  fuzz::UseOutputFolder();
  const std::string_view bytes = fuzz::TextIn(fuzz::InputBytes(data, size));
  fuzz::WriteOutputFile(output::kLog, bytes);
  fuzz::CheckCounts(CountLoggedDocuments(ProcessSettings().outputFolder),
                    fuzz::TextModeContent(bytes));
  return 0;
}
