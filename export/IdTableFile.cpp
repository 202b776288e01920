// The list decides which notes a run exports, so it is whole or it is not there: the library is
// asked for all of it first, and a line that cannot be written takes the file back.
#include "export/IdTableFile.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "base/FileSystem.h"
#include "base/HexNumberFile.h"
#include "base/OutputPaths.h"
#include "base/Settings.h"
#include "base/WideFormat.h"
#include "notes/IdTables.h"

namespace larkspan {

namespace {

std::wstring IdTablePath() { return InOutputFolder(output::kIdTable); }

// The library is asked for all of them before the file is begun: one that crashes meanwhile leaves
// no half of a list.
bool CollectIds(const IdTable& table, std::vector<std::uint32_t>& noteIds) {
  const auto collect = [&](std::uint32_t noteId) {
    noteIds.push_back(noteId);
    return true;
  };
  return ScanIds(table, collect) == ScanEnd::kEndOfTable;
}

bool WriteLines(file_system::UniqueFile file, const std::vector<std::uint32_t>& noteIds) {
  const bool written = std::all_of(noteIds.begin(), noteIds.end(), [&](std::uint32_t noteId) {
    const std::string line = FormatNarrow("%08X\n", static_cast<unsigned int>(noteId));
    return file_system::Write(file.get(), line) == line.size();
  });
  return file_system::Close(std::move(file)) && written;
}

}  // namespace

bool WriteIdTableFile(const IdTable& table) {
  std::vector<std::uint32_t> noteIds;
  const bool collected = CollectIds(table, noteIds);
  file_system::UniqueFile file = file_system::Open(IdTablePath(), L"w");
  if (!file) return false;
  if (WriteLines(std::move(file), noteIds) && collected) return true;
  file_system::Delete(IdTablePath());
  return false;
}

bool ReadIdTableFile(const IdTable& table) {
  const auto insert = [&](std::uint32_t noteId) { return InsertId(table, noteId).ok(); };
  return ReadHexNumberFile(IdTablePath(), insert) == HexNumberFileEnd::kEndOfFile;
}

}  // namespace larkspan
