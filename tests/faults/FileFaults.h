// Files that fail as planned. Programs that are linked with FaultyFileSystem.cpp take every call of
// the product's door to files through the plan in force here: larkspan_faulty.exe, the real program
// but for this, the unit tests and the torture. A plan's text is described in FileFaultPlan.h.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/faults/FileFaultPlan.h"

namespace larkspan {

// The environment variable with the plan of a process; it is read at the first file operation.
// Workers get it from their supervisor, and each process counts its own calls.
inline constexpr wchar_t kFileFaultsVariable[] = L"LARKSPAN_FILE_FAULTS";

// A plan for the calls of this process, for as long as it lives, and a record of them. One at a
// time.
class FileFaults {
 public:
  // Throws std::invalid_argument when the plan cannot be read. Without a plan nothing fails.
  explicit FileFaults(const std::string& plan = "");
  ~FileFaults();
  FileFaults(const FileFaults&) = delete;
  FileFaults& operator=(const FileFaults&) = delete;

  // The operations so far, those that failed included: "move 00000902.dxl".
  std::vector<std::string> Operations() const;

  // Those among the operations so far that are in this list, in the order in which they were.
  std::vector<std::string> OperationsAmong(const std::vector<std::string>& wanted) const;
};

// Counts one operation for the file of this name, which is in lower case, and gives the fault that
// the plan has for it. Any thread may call.
std::optional<FileFault> CountFileOperation(const std::string& operation, const std::string& file);

}  // namespace larkspan
