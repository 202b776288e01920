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

ClosingBlock::ClosingBlock(const OutputTree& tree, int listed)
    : listed_(listed),
      data_(FilesIn(tree, "data/")),
      design_(FilesIn(tree, "design/")),
      profile_(FilesIn(tree, "profile/")),
      failed_(CountMessages(LinesOf(tree, "log.txt"), "Major:")),
      warnings_(CountMessages(LinesOf(tree, "log.txt"), "Minor:")) {}

Lines ClosingBlock::Text() const {
  Lines lines = {kFirstOfTheClosing,
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

std::string ClosingBlock::MismatchMessage() const {
  if (Processed() == listed_) return "";
  return message::kCountMismatch + ("expected " + std::to_string(listed_)) + " but only found " +
         std::to_string(Processed());
}

int CountListed(const OutputTree& tree) {
  return static_cast<int>(LinesOf(tree, "idtable.txt").size());
}

}  // namespace larkspan::testing
