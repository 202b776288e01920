#include <algorithm>
#include <cstdio>
#include <iterator>

#include "tests/torture/Check.h"
#include "tests/torture/Expectation.h"

namespace larkspan::torture {

namespace {

std::string Counted(const std::string& label, int count) {
  char number[16];
  std::snprintf(number, sizeof number, "%8d", count);
  return label + ": " + number;
}

// The closing block, from what is on disk and in the log.
class ClosingBlock {
 public:
  explicit ClosingBlock(const Check& check)
      : listed_(check.isListUnread
                    ? 0
                    : static_cast<int>(LinesOf(check.run.tree, "idtable.txt").size())),
        data_(FilesIn(check, "data/")),
        design_(FilesIn(check, "design/")),
        profile_(FilesIn(check, "profile/")),
        failed_(CountMessages(check.run.log, "Major:")),
        warnings_(CountMessages(check.run.log, "Minor:")) {}

  Lines Text() const {
    Lines lines = {"Archive ended at: *",
                   "Total runtime (seconds): *",
                   Counted("Database total documents ", listed_),
                   "Exported Document Counts",
                   Counted("Data   ", data_),
                   Counted("Design ", design_),
                   Counted("Profile", profile_),
                   Counted("Exported total documents ", Exported()),
                   Counted("Failed total documents   ", failed_),
                   Counted("Total documents processed", Processed()),
                   Counted("Documents exported with warnings ", warnings_)};
    if (failed_ + warnings_ != 0) {
      lines.push_back("Some documents were not exported successfully. See log.txt for details.");
    }
    return lines;
  }

  // Empty when nothing is missing.
  std::string MismatchMessage() const {
    if (Processed() == listed_) return "";
    return "Document count mismatch: expected " + std::to_string(listed_) + " but only found " +
           std::to_string(Processed());
  }

 private:
  static int FilesIn(const Check& check, const std::string& folder) {
    return static_cast<int>(
        std::count_if(check.run.tree.begin(), check.run.tree.end(), [&](const auto& entry) {
          return entry.first.starts_with(folder) && entry.first != folder;
        }));
  }

  int Exported() const { return data_ + design_ + profile_; }
  int Processed() const { return Exported() + failed_; }

  const int listed_;
  const int data_;
  const int design_;
  const int profile_;
  const int failed_;
  const int warnings_;
};

void CheckMismatchLine(const Check& check, const ClosingBlock& block) {
  const std::string expected = block.MismatchMessage();
  const int lines = CountMessages(check.run.log, "Document count mismatch: ");
  if (expected.empty() ? lines != 0 : lines != 1 || CountMessages(check.run.log, expected) != 1) {
    check.Find("the log does not say what the counts say: " + expected);
  }
}

std::string Label(const std::string& line) { return line.substr(0, line.find(": ")); }

// What the workers wrote: the lines of the run without a fault, in their order. The end of a run
// that ended early leaves some out; a library that does not tell leaves a value out.
void CheckWorkersLines(const Check& check, const Lines& expected, const Lines& actual) {
  auto line = actual.begin();
  bool isBehindTheEnd = false;
  for (const std::string& wanted : expected) {
    const bool isThere =
        line != actual.end() &&
        (*line == wanted || (check.Allows(kAuditDiffers) && Label(*line) == Label(wanted)));
    if (isThere) ++line;
    if (!isThere && !check.endedEarly) check.Find("the audit report lacks: " + wanted);
    if (isThere && isBehindTheEnd) check.Find("the audit report lacks a line before: " + wanted);
    isBehindTheEnd = isBehindTheEnd || !isThere;
  }
  if (line != actual.end()) check.Find("the audit report has a strange line: " + *line);
}

Lines BeforeTheEnd(const Lines& audit) {
  return Lines(audit.begin(), std::find(audit.begin(), audit.end(), "Archive ended at: *"));
}

}  // namespace

void CheckAudit(const Check& check) {
  const ClosingBlock block(check);
  Lines workers = BeforeTheEnd(check.run.audit);
  const Lines closing(check.run.audit.begin() + std::ssize(workers), check.run.audit.end());
  // Workers that find the list at its end already tell the size once more.
  workers.erase(std::unique(workers.begin(), workers.end()), workers.end());
  if (closing != block.Text()) {
    check.Find("the audit report's closing block is not what is on disk:");
    for (const std::string& line : closing) check.Find("  " + line);
  }
  CheckMismatchLine(check, block);
  CheckWorkersLines(check, BeforeTheEnd(check.clean.audit), workers);
}

}  // namespace larkspan::torture
