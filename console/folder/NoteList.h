// The list of notes that decides what an export is to hold: idtable.txt.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/folder/SharedFile.h"

namespace larkspan::console {

struct NoteList {
  FileReading reading = FileReading::kMissing;
  std::vector<std::uint32_t> ids;  // Ascending, each once.
  std::uint64_t lines = 0;
  std::uint64_t faultyLines = 0;  // No note ID, not greater than the one before, or no end.
  std::uint64_t firstFaultyLine = 0;

  bool Contains(std::uint32_t id) const;
};

NoteList ReadNoteList(const std::wstring& folder);

}  // namespace larkspan::console
