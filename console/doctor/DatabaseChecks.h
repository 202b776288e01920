// The database is opened and its notes are listed by a real first worker; then real workers export
// a handful of them. All of it lies in folders for temporary files, which are gone afterwards.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/doctor/Check.h"
#include "console/doctor/TrialRun.h"
#include "console/folder/NoteList.h"

namespace larkspan::console {

// What the first worker left.
struct DatabaseTrial {
  TrialEnd end;
  std::string error;
  std::vector<std::string> warnings;
  std::optional<std::uint64_t> size;  // In bytes.
  NoteList list;

  bool HasList() const { return list.reading == FileReading::kRead && list.faultyLines == 0; }
};

DatabaseTrial TryDatabase(const TrialSurroundings& around, std::string& whyNot);

CheckFinding JudgeOpening(const DatabaseTrial& trial, const DoctorRequest& request);
CheckFinding JudgeSize(const DatabaseTrial& trial);
CheckFinding JudgeList(const DatabaseTrial& trial, const DoctorRequest& request);

// Some notes from all over the list, which is ascending: design notes have small IDs, and documents
// great ones.
std::vector<std::uint32_t> Handful(const std::vector<std::uint32_t>& list);

CheckFinding CheckNotes(const TrialSurroundings& around, const std::vector<std::uint32_t>& list);

}  // namespace larkspan::console
