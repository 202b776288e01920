// Step by step:
//   1. The parts that are joined move from "parts" to "joining".
//   2. The joined log and the joined index are written there.
//   3. "joining" gets the name "joined": from here on everything needed is safe.
//   4. The two texts take their places, and the files of notes theirs. What is there already has
//      been moved before.
//   5. "joined" is deleted.
// Nothing is deleted but folders that hold nothing, the texts that were joined, and what a part
// that is done has left at a note. A run that finds "joining" moves the parts back; one that finds
// "joined" goes on with step 4.
#include "console/parts/JoinParts.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <filesystem>
#include <mutex>
#include <optional>
#include <system_error>
#include <utility>

#include "base/FileSystem.h"
#include "base/FolderFiles.h"
#include "base/NoteId.h"
#include "base/OutputPaths.h"
#include "console/folder/FileCrew.h"
#include "console/folder/NoteList.h"
#include "console/folder/SystemFile.h"
#include "console/parts/Patience.h"
#include "console/parts/TextJoiner.h"
#include "report/MarkerFile.h"

namespace larkspan::console {

namespace {

constexpr wchar_t kJoining[] = L"\\joining";
constexpr wchar_t kJoined[] = L"\\joined";
constexpr std::array kAllFolders = {kPartsFolder, kJoining, kJoined};
constexpr std::array kTexts = {output::kLog, output::kUnidIndex};

bool Exists(const std::wstring& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

std::wstring NameOf(const std::wstring& path) {
  return L"\\" + std::filesystem::path(path).filename().native();
}

// A start of the Notes runtime that failed has marked the ID before the part's first note: none, or
// a note of another part.
bool NamesANoteOfThePart(const std::wstring& part) {
  const std::uint32_t marked = ReadMarkerFile(RunLog(part, LogLevel::kError));
  const NoteList list = ReadPartList(part);
  return marked == kNoNoteId || list.reading != FileReading::kRead || list.Contains(marked);
}

class Joining {
 public:
  Joining(const std::wstring& outputFolder, const FileProgress& onPart)
      : outputFolder_(outputFolder), onPart_(onPart) {}

  // Up to step 3.
  bool MakeSafe(const std::vector<Part>& parts, bool isWhole) {
    std::vector<std::wstring> collected;
    all_ = parts.size();
    return CollectParts(parts, collected) &&
           std::all_of(kTexts.begin(), kTexts.end(),
                       [&](const wchar_t* name) { return JoinText(collected, name, isWhole); }) &&
           Move(In(kJoining), In(kJoined));
  }

  JoinResult Finish() {
    result_.isDone = (!Exists(In(kJoined)) || TakePlaces()) && (!Exists(In(kJoining)) || Undo());
    if (result_.isDone) RemovePartsFolderIfEmpty();
    return result_;
  }

 private:
  std::wstring In(const std::wstring& name) const { return output::Join(outputFolder_, name); }

  bool Blame(const std::wstring& path) {
    const std::lock_guard lock(mutex_);
    if (result_.blocked.empty()) result_.blocked = path;
    return false;
  }

  bool Move(const std::wstring& from, const std::wstring& to,
            file_system::Earlier earlier = file_system::Earlier::kStays) {
    return Patiently([&] { return file_system::Move(from, to, earlier); }) || Blame(from);
  }

  bool ReplaceIfThere(const std::wstring& from, const std::wstring& to) {
    return !Exists(from) || Move(from, to, file_system::Earlier::kIsReplaced);
  }

  bool CollectParts(const std::vector<Part>& parts, std::vector<std::wstring>& collected) {
    if (!file_system::CreateFolder(In(kJoining))) return Blame(In(kJoining));
    for (const Part& part : parts) {
      collected.push_back(In(kJoining) + NameOf(part.folder));
      if (!GoesOn() || !Move(part.folder, collected.back())) return false;
    }
    return true;
  }

  // A text that no part has stays as it is.
  bool JoinText(const std::vector<std::wstring>& parts, const wchar_t* name, bool isWhole) {
    if (!GoesOn()) return false;
    const auto hasIt = [name](const std::wstring& part) {
      return Exists(output::Join(part, name));
    };
    if (std::none_of(parts.begin(), parts.end(), hasIt)) return true;
    TextJoiner joiner(In(kJoining) + name);
    if (isWhole) {
      joiner.AddFileOfFirstWorker(In(name));
    } else {
      joiner.AddFile(In(name));
    }
    for (const std::wstring& part : parts) joiner.AddFileOfLaterWorker(output::Join(part, name));
    if (isWhole) joiner.AddLastLinesLeftOut();
    return joiner.End() || Blame(In(kJoining) + name);
  }

  bool TakePlaces() {
    const std::wstring joined = In(kJoined);
    for (const wchar_t* name : kTexts) {
      if (!ReplaceIfThere(joined + name, In(name))) return false;
    }
    const auto parts = FoldersIn(joined);
    if (!parts) return Blame(joined);
    all_ = parts->size();
    for (const std::wstring& part : *parts) {
      if (!GoesOn() || !MoveNotes(part) || !MoveLeftOvers(part)) return false;
      if (!RemovePart(part)) return Blame(part);
      ++done_;
    }
    GoesOn();
    return RemoveEmptyFolder(joined) || Blame(joined);
  }

  bool GoesOn() {
    if (onPart_ && !onPart_(done_, all_)) result_.isBrokenOff = true;
    return !result_.isBrokenOff;
  }

  bool MoveNotes(const std::wstring& part) {
    return std::all_of(kNoteFolders.begin(), kNoteFolders.end(), [&](const wchar_t* name) {
      return MoveFiles(output::Join(part, name), L"*.*", In(name), file_system::Earlier::kStays);
    });
  }

  // Several at a time: on another machine's disk each waits for its answer.
  bool MoveFiles(const std::wstring& from, const wchar_t* pattern, const std::wstring& to,
                 file_system::Earlier earlier) {
    std::vector<std::wstring> names;
    VisitFiles(from, pattern, [&](std::wstring_view name) {
      if (!IsOfTheSystem(name)) names.emplace_back(name);
    });
    std::atomic<bool> areMoved = true;
    const auto move = [&](std::size_t index) {
      const std::wstring name = L"\\" + names[index];
      if (areMoved && !Move(from + name, to + name, earlier)) areMoved = false;
    };
    const auto goesOn = [&](std::uint64_t, std::uint64_t) { return GoesOn(); };
    return WorkOnFiles(names.size(), goesOn, [&] { return move; }) && areMoved;
  }

  // What a run left at the note at which it was cut off is the run's; it is no note.
  bool MoveLeftOvers(const std::wstring& part) {
    const bool isDone = !SizeAfterLine(part).empty();
    const auto moveLeftOver = [&](const wchar_t* name, bool isTheRuns) {
      const std::wstring leftOver = output::Join(part, name);
      if (isTheRuns) return ReplaceIfThere(leftOver, In(name));
      return DeleteIfThere(leftOver) || Blame(leftOver);
    };
    return moveLeftOver(output::kMarker, !isDone && NamesANoteOfThePart(part)) &&
           moveLeftOver(output::kTemporary, !isDone) &&
           MoveFiles(part, L"*.dxl.first", outputFolder_, file_system::Earlier::kIsReplaced);
  }

  bool Undo() {
    const std::wstring joining = In(kJoining);
    const auto parts = FoldersIn(joining);
    if (!parts) return Blame(joining);
    for (const std::wstring& part : *parts) {
      if (!Move(part, In(kPartsFolder) + NameOf(part))) return false;
    }
    for (const wchar_t* name : kTexts) file_system::Delete(joining + name);
    return RemoveEmptyFolder(joining) || Blame(joining);
  }

  // Other parts may be there still.
  void RemovePartsFolderIfEmpty() const {
    const std::wstring folder = In(kPartsFolder);
    if (HoldsNothing(folder)) RemoveEmptyFolder(folder);
  }

  const std::wstring& outputFolder_;
  const FileProgress& onPart_;
  std::mutex mutex_;
  JoinResult result_;
  std::uint64_t done_ = 0;
  std::uint64_t all_ = 0;
};

}  // namespace

bool HasParts(const std::wstring& outputFolder) {
  return std::any_of(kAllFolders.begin(), kAllFolders.end(),
                     [&](const wchar_t* name) { return Exists(output::Join(outputFolder, name)); });
}

std::vector<std::wstring> AllPartFolders(const std::wstring& outputFolder) {
  std::vector<std::wstring> all;
  for (const wchar_t* name : kAllFolders) {
    const auto folders = FoldersIn(output::Join(outputFolder, name));
    if (folders) all.insert(all.end(), folders->begin(), folders->end());
  }
  return all;
}

std::vector<std::wstring> HalfJoinedFolders(const std::wstring& outputFolder) {
  return FoldersIn(output::Join(outputFolder, kJoined)).value_or(std::vector<std::wstring>());
}

bool IsInParts(std::wstring_view subfolder) {
  const std::wstring_view first = subfolder.substr(0, subfolder.find(L'\\', 1));
  return std::find(kAllFolders.begin(), kAllFolders.end(), first) != kAllFolders.end();
}

JoinResult JoinParts(const std::wstring& outputFolder, const std::vector<Part>& parts, bool isWhole,
                     const FileProgress& onPart) {
  Joining joining(outputFolder, onPart);
  const bool isSafe = joining.MakeSafe(parts, isWhole);
  JoinResult result = joining.Finish();
  result.isDone = result.isDone && isSafe;
  // A request that came when all was moved has broken nothing off.
  result.isBrokenOff = result.isBrokenOff && !result.isDone;
  return result;
}

JoinResult FinishJoining(const std::wstring& outputFolder, const FileProgress& onPart) {
  JoinResult result = Joining(outputFolder, onPart).Finish();
  result.isBrokenOff = result.isBrokenOff && !result.isDone;
  return result;
}

}  // namespace larkspan::console
