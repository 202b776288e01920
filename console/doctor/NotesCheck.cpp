// The list that the workers go by is a file of theirs, idtable.txt, and they find the folders made
// that a first worker makes. So a folder with these two is all that it takes to have them export a
// few notes and no others, with the same supervision that a whole export has.
#include <algorithm>
#include <set>

#include "base/FileSystem.h"
#include "base/OutputPaths.h"
#include "console/doctor/DatabaseChecks.h"
#include "console/doctor/RuntimeChecks.h"
#include "console/folder/NoteFiles.h"
#include "console/folder/RunLogFile.h"
#include "console/folder/TemporaryFolder.h"
#include "console/text/Sizes.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr std::size_t kHandful = 5;

bool PrepareFolder(const std::wstring& folder, const std::vector<std::uint32_t>& notes) {
  for (const wchar_t* name : output::kSubfolders) {
    if (!file_system::CreateFolder(output::Join(folder, name))) return false;
  }
  std::string list;
  for (const std::uint32_t note : notes) list += NoteIdText(note) + "\r\n";
  return file_system::Append(output::Join(folder, output::kIdTable), list).complete;
}

// What became of the notes, read from what the workers left.
struct Results {
  std::size_t exported = 0;
  bool died = false;  // A worker died or hung at one.
  std::string faults;

  void Add(std::uint32_t note, const std::string& what) {
    faults += (faults.empty() ? "" : "; ") + NoteIdText(note) + ": " + what;
  }
};

void AddFault(const NoteLine& line, bool hung, Results& results) {
  switch (line.fault) {
    case NoteFault::kDeath:
      results.died = true;
      results.Add(line.id, hung ? "the library hung at it" : "the library crashed at it");
      break;
    case NoteFault::kPictures:
      results.Add(line.id, "damaged; exported without its pictures");
      break;
    default:
      results.Add(line.id, line.cause);
  }
}

Results ReadResults(const std::wstring& folder, const std::vector<std::uint32_t>& notes,
                    const std::vector<std::uint32_t>& hung) {
  Results results;
  for (const std::uint32_t note : notes) results.exported += HasNoteFile(folder, note) ? 1 : 0;
  for (const NoteLine& line : ReadRunLogFile(folder).notes) {
    AddFault(line, std::find(hung.begin(), hung.end(), line.id) != hung.end(), results);
  }
  return results;
}

CheckFinding JudgeResults(const Results& results, std::size_t tried, const std::string& error) {
  std::string detail =
      std::to_string(results.exported) + " of " + CountText(tried, "note", "notes") + " exported";
  if (!results.faults.empty()) detail += "; " + results.faults;
  if (!error.empty()) detail += "; " + error;
  const bool isWhole = results.exported == tried && results.faults.empty() && error.empty();
  if (isWhole) return Passed(detail);
  if (results.died) {
    return Failed(
        detail,
        "An export gets past such a note and lists it as lost: have the database repaired "
        "first, or begin, and give --stall where the library hangs.");
  }
  if (!error.empty() || results.exported == 0) {
    return Failed(detail,
                  "Open these notes in Notes on this machine as this user, and have the "
                  "database repaired where they do not open.");
  }
  return Warned(detail,
                "An export lists such notes as losses: have the database repaired first, or "
                "begin.");
}

}  // namespace

std::vector<std::uint32_t> Handful(const std::vector<std::uint32_t>& list) {
  std::set<std::uint32_t> notes;
  for (std::size_t i = 0; !list.empty() && i < kHandful; ++i) {
    notes.insert(list[i * (list.size() - 1) / (kHandful - 1)]);
  }
  // A worker cannot be told to go on behind the note 0.
  notes.erase(0);
  notes.erase(1);
  return {notes.begin(), notes.end()};
}

CheckFinding CheckNotes(const TrialSurroundings& around, const std::vector<std::uint32_t>& list) {
  const std::vector<std::uint32_t> notes = Handful(list);
  if (notes.empty()) return NotTried("the database lists no notes");
  const TemporaryFolder folder;
  if (folder.path().empty() || !PrepareFolder(folder.path(), notes)) {
    return NotTried("no folder can be made for temporary files");
  }
  const NotesTrialEnd end = RunListedNotes(around, folder.path(), notes.front());
  if (end.wasStopped) return NotTried("stopped by the user");
  const Results results = ReadResults(folder.path(), notes, end.hung);
  return JudgeResults(results, notes.size(), LastErrorIn(folder.path()));
}

}  // namespace larkspan::console
