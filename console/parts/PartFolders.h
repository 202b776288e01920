// The folders in which several workers export at once, one for each slice of the list of notes:
// "parts\<first note ID>" below the output folder. Each is an output folder of its own, with its
// part of the list, its log and its report, until all of them are joined.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/OutputPaths.h"
#include "console/folder/NoteList.h"
#include "console/parts/Slices.h"

namespace larkspan::console {

inline constexpr wchar_t kPartsFolder[] = L"\\parts";

// Those of the notes; the views are the first worker's, in the output folder itself.
inline constexpr std::array kNoteFolders = {output::kDataFolder, output::kDesignFolder,
                                            output::kRawDesignFolder, output::kProfileFolder};

struct Part {
  std::wstring folder;
  std::vector<std::uint32_t> notes;  // Never empty; ascending.
};

// The folder of the slice that begins with this note.
std::wstring PartFolder(const std::wstring& outputFolder, std::uint32_t firstNote);

// Makes the folder of a slice with all that a later worker finds there: the subfolders for notes,
// and its part of the list, which is written last and whole. False when something cannot be made,
// or the folder is there and holds a note or a log; what was made stays, and is no part.
bool MakePart(const std::wstring& outputFolder, Slice notes);

// A part's list; one that another program holds is waited for.
NoteList ReadPartList(const std::wstring& partFolder);

// The parts that are there, by ascending notes, without what RemoveUnfinishedParts removes. No
// value when they cannot be told: a folder or a list cannot be read, or a folder with a note or a
// log has no whole list. What another program holds is waited for.
std::optional<std::vector<Part>> ReadParts(const std::wstring& outputFolder);

// Removes what MakePart left of folders that did not become parts: without a whole list, a note and
// a log. One that holds anything else stays.
void RemoveUnfinishedParts(const std::wstring& outputFolder);

// Removes a part's folder once its notes have been moved away. False, and what is there stays, when
// it still holds a note, or anything that is not a part's; a file that another program holds is
// waited for.
bool RemovePart(const std::wstring& partFolder);

// Deletes a file that may be missing. Otherwise as RemovePart.
bool DeleteIfThere(const std::wstring& file);

// Whether a folder is not there, or has no entry but the files that a system puts anywhere. False
// when it cannot be listed.
bool HoldsNothing(const std::wstring& folder);

// Removes a folder that holds nothing, with the files of the system. Otherwise as RemovePart.
bool RemoveEmptyFolder(const std::wstring& folder);

// The folders in a folder, by their names; no value when it cannot be listed. One that is not there
// has none.
std::optional<std::vector<std::wstring>> FoldersIn(const std::wstring& folder);

// A worker has come to the end of the part's list: only then it writes the size of the database.
bool IsPartDone(const Part& part);

// The line about that size, as the worker of the folder wrote it, without its end; empty when there
// is none.
std::string SizeAfterLine(const std::wstring& partFolder);

}  // namespace larkspan::console
