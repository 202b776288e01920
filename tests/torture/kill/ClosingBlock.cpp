#include "tests/torture/kill/ClosingBlock.h"

#include <algorithm>

namespace larkspan::torture {

namespace {

int CountFiles(const OutputTree& tree, const std::string& folder) {
  return static_cast<int>(std::count_if(tree.begin(), tree.end(), [&](const auto& entry) {
    return entry.first.starts_with(folder) && !entry.first.ends_with('/');
  }));
}

int CountLinesOf(const Lines& lines, const std::string& beginning) {
  return static_cast<int>(std::count_if(lines.begin(), lines.end(), [&](const std::string& line) {
    return line.starts_with(beginning);
  }));
}

// The number of the last line of the report that begins so, or -1.
int LastNumber(const Lines& report, const std::string& label) {
  for (auto line = report.rbegin(); line != report.rend(); ++line) {
    if (line->starts_with(label)) return std::stoi(line->substr(line->find(':') + 1));
  }
  return -1;
}

// Whether the mismatch is told behind the last worker.
bool TellsMismatch(const Lines& log) {
  for (auto line = log.rbegin(); line != log.rend(); ++line) {
    if (line->starts_with(kMismatch)) return true;
    if (line->starts_with("#DEBUG# - End of Archive Main Loop")) return false;
  }
  return false;
}

}  // namespace

Lines CheckClosing(const OutputTree& tree) {
  const Lines report = LinesOf(tree, "audit.txt");
  const Lines log = LinesOf(tree, "log.txt");
  const int listed = static_cast<int>(LinesOf(tree, "idtable.txt").size());
  const int data = CountFiles(tree, "data/");
  const int design = CountFiles(tree, "design/");
  const int profile = CountFiles(tree, "profile/");
  const int failed = CountLinesOf(log, "#WARNING# - Major:");
  const int processed = data + design + profile + failed;
  const std::pair<const char*, int> numbers[] = {{"Database total documents", listed},
                                                 {"Data ", data},
                                                 {"Design ", design},
                                                 {"Profile:", profile},
                                                 {"Failed total documents", failed},
                                                 {"Total documents processed", processed},
                                                 {"Documents exported with warnings", 0}};
  Lines findings;
  for (const auto& [label, number] : numbers) {
    const int told = LastNumber(report, label);
    if (told != number) {
      findings.push_back("the report says " + std::string(label) + " " + std::to_string(told) +
                         " instead of " + std::to_string(number));
    }
  }
  if (TellsMismatch(log) != (processed != listed)) {
    findings.emplace_back("the log tells of a mismatch, or does not, against the numbers");
  }
  return findings;
}

}  // namespace larkspan::torture
