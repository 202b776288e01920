#include <algorithm>
#include <iterator>

#include "tests/support/ClosingBlock.h"
#include "tests/support/LogMessages.h"
#include "tests/torture/Check.h"
#include "tests/torture/Expectation.h"

namespace larkspan::torture {

namespace {

using testing::ClosingBlock;

void CheckMismatchLine(const Check& check, const ClosingBlock& block) {
  const std::string expected = block.MismatchMessage();
  const int lines = CountMessages(check.run.log, message::kCountMismatch);
  if (lines == 0 && check.mayLackMismatch) return;
  if (expected.empty() ? lines != 0 : lines != 1 || CountMessages(check.run.log, expected) != 1) {
    check.Find("the log does not say what the counts say: " + expected);
  }
}

// The library did not tell what stands there.
bool IsUntold(const std::string& line) {
  return line.ends_with(": ") || line.ends_with(": unavailable");
}

std::string Label(const std::string& line) { return line.substr(0, line.find(": ")); }

// What the workers wrote: the lines of the run without a fault, in their order. The end of a run
// that ended early leaves some out; a library that does not tell leaves a value out.
void CheckWorkersLines(const Check& check, const Lines& expected, const Lines& actual) {
  auto line = actual.begin();
  bool isBehindTheEnd = false;
  for (const std::string& wanted : expected) {
    const bool isThere = line != actual.end() &&
                         (*line == wanted || (Label(*line) == Label(wanted) && IsUntold(*line) &&
                                              check.Explains(kAuditDiffers, Label(wanted))));
    if (isThere) ++line;
    if (!isThere && !check.endedEarly) check.Find("the audit report lacks: " + wanted);
    if (isThere && isBehindTheEnd) check.Find("the audit report lacks a line before: " + wanted);
    isBehindTheEnd = isBehindTheEnd || !isThere;
  }
  if (line != actual.end()) check.Find("the audit report has a strange line: " + *line);
}

void CheckUnavailable(const Check& check) {
  const auto untold =
      std::count_if(check.run.audit.begin(), check.run.audit.end(),
                    [](const std::string& line) { return line.ends_with(": unavailable"); });
  if (untold != CountMessages(check.run.log, message::kNoQuota)) {
    check.Find("the log does not say which sizes are unavailable");
  }
}

Lines BeforeTheEnd(const Lines& audit) {
  return Lines(audit.begin(), std::find(audit.begin(), audit.end(), testing::kFirstOfTheClosing));
}

ClosingBlock BlockOf(const Check& check) {
  testing::OutputTree counted = check.run.tree;
  if (check.isListUnread) counted.erase("idtable.txt");
  if (check.isLogUnread) counted.erase("log.txt");
  return ClosingBlock(counted, testing::CountListed(counted));
}

}  // namespace

void CheckAudit(const Check& check) {
  const ClosingBlock block = BlockOf(check);
  Lines workers = BeforeTheEnd(check.run.audit);
  const Lines closing(check.run.audit.begin() + std::ssize(workers), check.run.audit.end());
  // Workers that find the list at its end already tell the size once more.
  workers.erase(std::unique(workers.begin(), workers.end()), workers.end());
  if (closing != block.Text()) {
    check.Find("the audit report's closing block is not what is on disk:");
    for (const std::string& line : closing) check.Find("  " + line);
  }
  CheckMismatchLine(check, block);
  CheckUnavailable(check);
  CheckWorkersLines(check, BeforeTheEnd(check.clean.audit), workers);
}

}  // namespace larkspan::torture
