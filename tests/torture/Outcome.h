// What a run over the stand-in library left behind.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/support/OutputTree.h"

namespace larkspan::torture {

using Lines = std::vector<std::string>;

struct Outcome {
  testing::OutputTree tree;
  Lines log;                            // Without line ends.
  Lines audit;                          // Likewise, with the times masked; of an export.
  std::map<std::string, int> calls;     // Of the library, in the last runtime of this process.
  std::map<std::string, int> leftOpen;  // In the library, at the end of that runtime.
};

// The lines of a file of the tree; none when there is no such file.
Lines LinesOf(const testing::OutputTree& tree, const std::string& name);

// Reads what is in the output folder of a run.
Outcome ReadOutcome(const std::wstring& output);

// The same of a run in this process, with what the library's ledger says; removes the folder.
Outcome TakeOutcome(const std::wstring& output);

}  // namespace larkspan::torture
