// What is left of the run log and of the audit report when operations on them fail.
#pragma once

#include <string>
#include <vector>

#include "tests/torture/DiskCase.h"
#include "tests/torture/Outcome.h"

namespace larkspan::torture {

// Whether the fault keeps the file from being read at its end: its only reader finds nothing.
bool IsUnread(const DiskCase& fault, const std::vector<std::string>& operations);

// A run without a fault: its operations in their order, and what it wrote.
struct CleanLines {
  const std::vector<std::string>& operations;
  const Lines& lines;
};

// The file has the lines of a run without a fault, in their order. Where the fault struck it, it
// lacks a line for each operation that failed, and none of those before.
void CheckLinesOf(const std::string& name, const DiskCase& fault, const CleanLines& clean,
                  const Lines& found, Lines& findings);

}  // namespace larkspan::torture
