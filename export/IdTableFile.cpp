#include "export/IdTableFile.h"

#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>

#include "app/Settings.h"
#include "base/File.h"
#include "base/HexNumberFile.h"
#include "base/OutputPaths.h"
#include "notes/IdTables.h"

namespace larkspan {

namespace {

std::wstring IdTablePath() { return InOutputFolder(output::kIdTable); }

}  // namespace

bool WriteIdTableFile(const IdTable& table) {
  UniqueFile file = OpenFile(IdTablePath(), L"w");
  if (!file) return false;
  const bool linesWritten = ScanIds(table, [&](std::uint32_t noteId) {
    return std::fprintf(file.get(), "%08X\n", static_cast<unsigned int>(noteId)) >= 0;
  });
  const bool closed = CloseFile(std::move(file));
  if (linesWritten && closed) return true;
  DeleteFileW(IdTablePath().c_str());
  return false;
}

bool ReadIdTableFile(const IdTable& table) {
  const auto insert = [&](std::uint32_t noteId) { return InsertId(table, noteId).ok(); };
  return ReadHexNumberFile(IdTablePath(), insert) == HexNumberFileEnd::kEndOfFile;
}

}  // namespace larkspan
