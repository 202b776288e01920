// The run log, of which the closing block of the audit report counts lines.
#include <cstdlib>
#include <string>

#include "base/OutputPaths.h"
#include "report/AuditReport.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/Target.h"
#include "tests/fuzz/windows/HexText.h"
#include "tests/fuzz/windows/OutputFolder.h"

namespace larkspan::fuzz {

namespace {

constexpr std::size_t kPiece = 1022;

// As a stream in text mode gives them.
std::string WithLineFeedsAlone(std::string_view bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    const bool endsLine = bytes[i] == '\r' && i + 1 < bytes.size() && bytes[i + 1] == '\n';
    if (!endsLine) text.push_back(bytes[i]);
  }
  return text;
}

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

int NumberBehind(const std::string& report, const char* label) {
  const std::size_t at = report.find(label);
  Require(at != std::string::npos, "the report has this line");
  return std::atoi(report.c_str() + at + std::string_view(label).size());
}

void CheckReport(const std::string& report, const std::string& log) {
  const int failed = CountLines(log, "#WARNING# - Major:");
  const int warned = CountLines(log, "#WARNING# - Minor:");
  Require(NumberBehind(report, "Failed total documents   :") == failed, "failures are counted");
  Require(NumberBehind(report, "Total documents processed:") == failed, "failures are processed");
  Require(NumberBehind(report, "Documents exported with warnings :") == warned,
          "warnings are counted");
  Require(report.ends_with("See log.txt for details.\r\n") == (failed + warned > 0),
          "the last line names the log when there is something to read");
}

}  // namespace

}  // namespace larkspan::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  fuzz::UseOutputFolder();
  const std::string_view bytes = fuzz::TextIn(fuzz::InputBytes(data, size));
  fuzz::WriteOutputFile(output::kLog, bytes);
  WriteAuditEnd(std::time(nullptr));
  fuzz::CheckReport(fuzz::TakeAppendedText(),
                    fuzz::WithLineFeedsAlone(fuzz::TextModeContent(bytes)));
  return 0;
}
