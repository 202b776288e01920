// The closing block of the audit report, counted again from the files of the folder and the lines
// of the log.
#pragma once

#include <string>

#include "tests/support/RunTexts.h"

namespace larkspan::testing {

class ClosingBlock {
 public:
  // With the number of notes that the list has for the one who counts: none, where it could not be
  // opened.
  ClosingBlock(const OutputTree& tree, int listed);

  // The lines that the report ends with, their times masked.
  Lines Text() const;

  // What the log says where the counts and the list do not agree; empty where they do.
  std::string MismatchMessage() const;

 private:
  int Exported() const { return data_ + design_ + profile_; }
  int Processed() const { return Exported() + failed_; }

  const int listed_;
  const int data_;
  const int design_;
  const int profile_;
  const int failed_;
  const int warnings_;
};

// The number of notes in the list that lies in the folder.
int CountListed(const OutputTree& tree);

// The first line of a closing block, its time masked.
inline constexpr char kFirstOfTheClosing[] = "Archive ended at: *";

}  // namespace larkspan::testing
