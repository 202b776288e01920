// What is left of a file of lines when operations on files fail.
#pragma once

#include <string>
#include <vector>

#include "tests/support/Lines.h"
#include "tests/torture/FileCase.h"

namespace larkspan::torture {

// Whether the fault keeps the file from being read at its end: its only reader finds nothing.
bool IsUnread(const FileCase& fault, const std::vector<std::string>& operations);

// Whether a line is lost when this operation on its file fails: what is read is there, and what is
// closed has been written.
bool CostsALine(const std::string& operation);

// How many lines of the file are written before the first operation that fails, in a run with
// these operations.
std::size_t LinesBefore(const FileCase& fault, const std::vector<std::string>& operations,
                        const std::string& name);

// A run without a fault: its operations in their order, and the lines of the file, those of an
// earlier worker first.
struct CleanLines {
  const std::vector<std::string>& operations;
  const Lines& lines;
};

// Of the run log and of the audit report: each has the lines of a run without a fault, in their
// order. Where the fault struck the file, it lacks a line at most when the fault comes once, and
// otherwise none of those that were written before it.
void CheckLinesOf(const std::string& name, const FileCase& fault, const CleanLines& clean,
                  const Lines& found, Lines& findings);

}  // namespace larkspan::torture
