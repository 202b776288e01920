#include "notes/IdTables.h"

#include "notes/Handles.h"

namespace larkspan {

Status CreateIdTable(IdTable& table) {
  constexpr notes_api::DWORD kFlags = 0;
  return AcquireHandle(table, [&](notes_api::DHANDLE* address) {
    return notes_api::IDCreateTable(kFlags, address);
  });
}

Status InsertId(const IdTable& table, std::uint32_t noteId) {
  return Status(notes_api::IDInsert(table.get(), noteId, nullptr));
}

std::uint32_t CountIds(const IdTable& table) { return notes_api::IDEntries(table.get()); }

// The library ends a scan that fails in the same way as one that has reached the end, so the IDs
// are counted.
ScanEnd ScanIds(const IdTable& table, const std::function<bool(std::uint32_t)>& visit) {
  notes_api::NOTEID noteId = 0;
  std::uint32_t visited = 0;
  for (notes_api::BOOL first = 1; notes_api::IDScan(table.get(), first, &noteId) != 0; first = 0) {
    ++visited;
    if (!visit(noteId)) return ScanEnd::kStoppedByVisitor;
  }
  return visited < CountIds(table) ? ScanEnd::kFailed : ScanEnd::kEndOfTable;
}

}  // namespace larkspan
