// One failing operation on the program's own files.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace larkspan::torture {

struct FileCase {
  std::string operation;  // As in a plan of tests/faults/FileFaultPlan.h.
  std::string file;       // Its name in lower case; "*" for any.
  int call = 1;           // Of this operation for this file, counted from 1.
  bool andAllLater = false;
  bool closesRead = false;  // It closes a file that was read only.
  std::string error;

  // Those of a write that reach the disk nevertheless.
  std::size_t bytes = 0;
};

std::string PlanOf(const FileCase& fault);

std::string Describe(const FileCase& fault);

// Each operation on each file fails once, and from its first call on.
bool IsCore(const FileCase& fault);

// Each operation of a run, in a record of tests/faults/FileFaults.h, fails once and from then on.
// Then the disk is full from each write on, whatever the file.
std::vector<FileCase> FileCases(const std::vector<std::string>& operations);

}  // namespace larkspan::torture
