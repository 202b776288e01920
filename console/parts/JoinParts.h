// Parts become the export: the files of their notes, and the lines of their logs and indexes, in
// the order of the notes.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "console/folder/FileProgress.h"
#include "console/parts/PartFolders.h"

namespace larkspan::console {

// Whether parts, or what joining them left, lie in the folder: what is there is not the whole
// export.
bool HasParts(const std::wstring& outputFolder);

// Whether a folder below the output folder ("\parts\00000902\data") is one of those.
bool IsInParts(std::wstring_view subfolder);

// The folders of all parts there, wherever a cut-off joining has left them, without those that
// cannot be listed; and of these the ones whose lines are joined already, and whose files are to
// follow.
std::vector<std::wstring> AllPartFolders(const std::wstring& outputFolder);
std::vector<std::wstring> HalfJoinedFolders(const std::wstring& outputFolder);

struct JoinResult {
  // If not, FinishJoining is to be called, then or later.
  bool isDone = false;
  bool isBrokenOff = false;
  // The file or folder that could not be moved, written or removed; empty when there is none.
  std::wstring blocked;
};

// Joins these parts, which follow behind what the output folder holds. `isWhole`: they are all that
// there are, and done. The other parts stay where they are.
//
// No note is replaced, and one that is cut off anywhere loses nothing: until all texts are joined
// and safe it is undone, from then on it is finished.
// onPart is called often, with the parts that are joined, of so many that lie there. False breaks
// the joining off.
JoinResult JoinParts(const std::wstring& outputFolder, const std::vector<Part>& parts, bool isWhole,
                     const FileProgress& onPart = {});

// Brings to an end what a cut-off JoinParts began, one way or the other.
JoinResult FinishJoining(const std::wstring& outputFolder, const FileProgress& onPart = {});

}  // namespace larkspan::console
