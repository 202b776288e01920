#include "tests/support/ClosingBlock.h"

#include <algorithm>
#include <cstdio>

#include "tests/support/LogMessages.h"

namespace larkspan::testing {

namespace {

int FilesIn(const OutputTree& tree, const std::string& folder) {
  return static_cast<int>(std::count_if(tree.begin(), tree.end(), [&](const auto& entry) {
    return entry.first.starts_with(folder) && entry.first != folder;
  }));
}

std::string Counted(const std::string& label, int count) {
  char number[16];
  std::snprintf(number, sizeof number, "%8d", count);
  return label + ": " + number;
}

}  // namespace

Lines ClosingLines(const ClosingCounts& counts) {
  Lines lines = {kFirstOfTheClosing,
                 "Total runtime (seconds): *",
                 Counted("Database total documents ", counts.listed),
                 "Exported Document Counts",
                 Counted("Data   ", counts.data),
                 Counted("Design ", counts.design),
                 Counted("Profile", counts.profile),
                 Counted("Exported total documents ", counts.Exported()),
                 Counted("Failed total documents   ", counts.failed),
                 Counted("Total documents processed", counts.Processed()),
                 Counted("Documents exported with warnings ", counts.warnings)};
  if (counts.failed + counts.warnings != 0) {
    lines.push_back("Some documents were not exported successfully. See log.txt for details.");
  }
  return lines;
}

ClosingBlock::ClosingBlock(const OutputTree& tree, int listed)
    : counts_{.listed = listed,
              .data = FilesIn(tree, "data/"),
              .design = FilesIn(tree, "design/"),
              .profile = FilesIn(tree, "profile/"),
              .failed = CountMessages(LinesOf(tree, "log.txt"), "Major:"),
              .warnings = CountMessages(LinesOf(tree, "log.txt"), "Minor:")} {}

std::string ClosingBlock::MismatchMessage() const {
  if (counts_.Processed() == counts_.listed) return "";
  return message::kCountMismatch + ("expected " + std::to_string(counts_.listed)) +
         " but only found " + std::to_string(counts_.Processed());
}

int CountListed(const OutputTree& tree) {
  return static_cast<int>(LinesOf(tree, "idtable.txt").size());
}

}  // namespace larkspan::testing
