// The notes are exported in the order of idtable.txt, so what is done is a beginning of that list:
//   1. The list must be whole, and a note begun; else there is nothing to go on with.
//   2. The marker names the note at which the run was cut off. Is all of it there, the run goes on
//      behind it. Else it is tried again; but when that was done before, it is what ends the
//      machine, and counts as lost.
//   3. Without a marker the run was cut off between two notes. It goes on behind the last one that
//      has a file, or a line that says why it has none.
#include "console/follow/Resumption.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string_view>
#include <system_error>
#include <vector>

#include "base/FileSystem.h"
#include "base/FolderFiles.h"
#include "base/NoteId.h"
#include "base/OutputPaths.h"
#include "console/folder/NoteFiles.h"
#include "console/folder/NoteList.h"
#include "console/folder/RunLogFile.h"
#include "console/follow/OutputFolder.h"
#include "console/parts/JoinParts.h"
#include "console/text/Utf.h"
#include "report/MarkerFile.h"

namespace larkspan::console {

namespace {

class Folder {
 public:
  Folder(const std::wstring& path, bool archive) : path_(path), archive_(archive) {}

  bool Has(const std::wstring& name) const { return FileExists(output::Join(path_, name)); }

  // Its own file, or that of its kind in an archive.
  bool HasNote(std::uint32_t note) const {
    return archive_ ? HasNoteFile(path_, note) : Has(output::NoteFile({}, note));
  }

  // Nothing of it can be missing: a design note may need its raw copy as well.
  bool HasAllOf(std::uint32_t note) const {
    return HasNote(note) &&
           (!archive_ || !HasDesign(note) || Has(output::NoteFile(output::kRawDesignFolder, note)));
  }

 private:
  bool HasDesign(std::uint32_t note) const {
    return Has(output::NoteFile(output::kDesignFolder, note));
  }

  const std::wstring& path_;
  bool archive_;
};

// The note before it in the list. Notes have greater IDs than 1, so that there is always one that
// the export goes on behind, and it is never 0, which would begin anew.
std::uint32_t Before(const std::vector<std::uint32_t>& notes, std::uint32_t note) {
  const auto place = std::lower_bound(notes.begin(), notes.end(), note);
  return place == notes.begin() ? note - 1 : *std::prev(place);
}

std::uint32_t LastFinished(const std::vector<std::uint32_t>& notes, const Folder& folder,
                           const RunLogFacts& log) {
  const auto finished = [&](std::uint32_t note) {
    const auto isOfNote = [note](const NoteLine& line) { return line.id == note; };
    return folder.HasNote(note) || std::any_of(log.notes.begin(), log.notes.end(), isOfNote);
  };
  const auto last = std::find_if(notes.rbegin(), notes.rend(), finished);
  return last == notes.rend() ? notes.front() - 1 : *last;
}

bool IsWhole(const NoteList& list, const Outcome& outcome) {
  if (list.reading != FileReading::kRead || list.faultyLines > 0 || list.ids.empty()) return false;
  const std::optional<std::uint64_t>& told = outcome.progress.documents;
  return !told || *told == list.ids.size();
}

bool HasNoteFiles(const std::wstring& folder, bool archive) {
  return archive ? HasAnyNoteFile(folder) : CountPlainNotes(folder) > 0;
}

bool WasTriedAgain(const Outcome& outcome, std::uint32_t note) {
  const auto isOfNote = [note](const Resumed& resumed) { return resumed.triedAgain == note; };
  return std::any_of(outcome.resumed.begin(), outcome.resumed.end(), isOfNote);
}

Resumption Behind(const std::vector<std::uint32_t>& notes, FirstWorker first) {
  const auto next = std::upper_bound(notes.begin(), notes.end(), first.noteId);
  return {false, first, static_cast<std::uint32_t>(next - notes.begin()),
          static_cast<std::uint32_t>(notes.size()), std::nullopt};
}

// The note that is tried again is opened again, and its line written once more. It is the last one,
// and may be a part of a line.
void DropIndexLine(const std::wstring& folder, std::uint32_t note) {
  const std::filesystem::path path = output::Join(folder, output::kUnidIndex);
  std::ifstream index(path, std::ios::binary);
  std::string text(std::istreambuf_iterator<char>(index), {});
  index.close();
  const std::size_t end = text.ends_with('\n') ? text.size() - 1 : text.size();
  const std::size_t begin = end == 0 ? 0 : text.rfind('\n', end - 1) + 1;
  if (!std::string_view(text).substr(begin).starts_with(NoteIdText(note) + ',')) return;
  std::error_code error;
  std::filesystem::resize_file(path, begin, error);
}

}  // namespace

Resumption PlanResumption(const std::wstring& folder, const Outcome& outcome) {
  const NoteList list = ReadNoteList(folder);
  const RunLogFacts log = ReadRunLogFile(folder);
  const Folder files(folder, outcome.archive);
  const std::uint32_t marked = ReadMarkerFile(RunLog(folder, LogLevel::kError));
  const bool isMarked = marked != kNoNoteId && list.Contains(marked);
  Resumption resumption;
  resumption.isImpossible =
      !IsWhole(list, outcome) && (HasNoteFiles(folder, outcome.archive) || HasParts(folder));
  if (!IsWhole(list, outcome)) return resumption;
  const std::uint32_t finished = LastFinished(list.ids, files, log);
  const bool hasBegun =
      isMarked || finished >= list.ids.front() || files.Has(output::kUnidIndex) || HasParts(folder);
  if (!hasBegun) return resumption;
  resumption = Behind(list.ids, {finished});
  if (isMarked && files.HasAllOf(marked)) {
    resumption = Behind(list.ids, {marked});
  } else if (isMarked && WasTriedAgain(outcome, marked)) {
    resumption = Behind(list.ids, {marked, true});
  } else if (isMarked) {
    resumption = Behind(list.ids, {Before(list.ids, marked)});
    resumption.triedAgain = marked;
  }
  return resumption;
}

void PrepareResumption(const std::wstring& folder, const Resumption& resumption) {
  const auto remove = [&folder](const std::wstring& name) {
    file_system::Delete(output::Join(folder, name));
  };
  // The marker last: when this is cut off, it says so again.
  if (resumption.triedAgain) {
    DropIndexLine(folder, *resumption.triedAgain);
    MoveDesignFileAside(folder, *resumption.triedAgain);
  }
  remove(output::kTemporary);
  remove(output::kMarker);
  if (resumption.first) return;
  for (const wchar_t* name : {output::kIdTable, output::kUnidIndex, output::kProperties,
                              output::kAcl, output::kLog, output::kAudit}) {
    remove(name);
  }
  remove(output::StageOf(output::kProperties));
  std::error_code error;
  std::filesystem::remove_all(output::Join(folder, output::kViewsFolder), error);
}

}  // namespace larkspan::console
