#include "export/IdTableFile.h"

#include <cstdint>
#include <string>
#include <utility>

#include "app/Settings.h"
#include "base/File.h"
#include "base/FileSystem.h"
#include "base/HexNumberFile.h"
#include "base/OutputPaths.h"
#include "base/WideFormat.h"
#include "notes/IdTables.h"

namespace larkspan {

namespace {

std::wstring IdTablePath() { return InOutputFolder(output::kIdTable); }

}  // namespace

bool WriteIdTableFile(const IdTable& table) {
  UniqueFile file = OpenFile(IdTablePath(), L"w");
  if (!file) return false;
  std::uint32_t lines = 0;
  const bool linesWritten = ScanIds(table, [&](std::uint32_t noteId) {
    const std::string line = FormatNarrow("%08X\n", static_cast<unsigned int>(noteId));
    ++lines;
    return file_system::Write(file.get(), line) == line.size();
  });
  const bool closed = CloseFile(std::move(file));
  // A scan that fails looks like one that has reached the end.
  if (linesWritten && closed && lines >= CountIds(table)) return true;
  file_system::Delete(IdTablePath());
  return false;
}

bool ReadIdTableFile(const IdTable& table) {
  const auto insert = [&](std::uint32_t noteId) { return InsertId(table, noteId).ok(); };
  return ReadHexNumberFile(IdTablePath(), insert) == HexNumberFileEnd::kEndOfFile;
}

}  // namespace larkspan
