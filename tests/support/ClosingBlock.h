// The closing block of the audit report: what it says for given numbers, and those numbers counted
// again from the files of the folder and the lines of the log.
#pragma once

#include <string>

#include "tests/support/RunTexts.h"

namespace larkspan::testing {

struct ClosingCounts {
  int listed = 0;
  int data = 0;
  int design = 0;
  int profile = 0;
  int failed = 0;
  int warnings = 0;

  int Exported() const { return data + design + profile; }
  int Processed() const { return Exported() + failed; }
};

// The lines that the report ends with, their times masked.
Lines ClosingLines(const ClosingCounts& counts);

class ClosingBlock {
 public:
  // With the number of notes that the list has for the one who counts: none, where it could not be
  // opened.
  ClosingBlock(const OutputTree& tree, int listed);

  Lines Text() const { return ClosingLines(counts_); }

  // What the log says where the counts and the list do not agree; empty where they do.
  std::string MismatchMessage() const;

 private:
  const ClosingCounts counts_;
};

// The number of notes in the list that lies in the folder.
int CountListed(const OutputTree& tree);

// The first line of a closing block, its time masked.
inline constexpr char kFirstOfTheClosing[] = "Archive ended at: *";

}  // namespace larkspan::testing
