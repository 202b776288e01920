#include "tests/torture/kill/ClosingCheck.h"

#include <algorithm>

#include "tests/support/ClosingBlock.h"
#include "tests/support/LogMessages.h"

namespace larkspan::torture {

namespace {

// The last block of the report: a further run in the folder has appended its own.
Lines LastBlock(const OutputTree& tree) {
  const Lines report = testing::LinesIn(testing::MaskAuditTimes(ContentOf(tree, "audit.txt")));
  auto first = std::find(report.rbegin(), report.rend(), testing::kFirstOfTheClosing);
  return first == report.rend() ? Lines() : Lines(first.base() - 1, report.end());
}

// What the log says of a mismatch behind the last worker, all of it.
Lines MismatchesTold(const Lines& log) {
  Lines told;
  for (const std::string& line : log) {
    if (line.starts_with("#DEBUG# - End of Archive Main Loop")) told.clear();
    if (MessageOf(line).starts_with(message::kCountMismatch)) told.emplace_back(MessageOf(line));
  }
  return told;
}

}  // namespace

Lines CheckClosing(const OutputTree& tree) {
  const testing::ClosingBlock counted(tree, testing::CountListed(tree));
  Lines findings;
  const Lines block = LastBlock(tree);
  if (block != counted.Text()) {
    findings.emplace_back("the report's closing block is not what is on disk:");
    findings.insert(findings.end(), block.begin(), block.end());
  }
  const std::string mismatch = counted.MismatchMessage();
  if (MismatchesTold(LinesOf(tree, "log.txt")) != (mismatch.empty() ? Lines() : Lines{mismatch})) {
    findings.push_back("the log does not say what the numbers say: " + mismatch);
  }
  return findings;
}

}  // namespace larkspan::torture
