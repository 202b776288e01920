// A disk that became full during a run holds what was written before.
#pragma once

#include <string>
#include <vector>

#include "tests/torture/Outcome.h"

namespace larkspan::torture {

struct FullDisk {
  const std::vector<std::string>& operations;  // Of the run without a fault, as recorded.
  int firstFailingWrite = 1;                   // Counted from 1, over all files.
  const testing::OutputTree& earlier;          // What lay in the folder besides.
  const testing::OutputTree& clean;            // What the run without a fault leaves.
};

// Each file that had got its final name by then is there, whole, and each file that grows has the
// lines that were in it by then and begins as that of the run without a fault.
void CheckFullDisk(const FullDisk& disk, const testing::OutputTree& tree, Lines& findings);

}  // namespace larkspan::torture
