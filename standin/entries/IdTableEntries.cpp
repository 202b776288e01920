// Entry points for ID tables.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

using namespace larkspan::standin;

STATUS LARKSPAN_NOTES_CALL IDCreateTable(DWORD flags, DHANDLE* table) {
  const Call call("IDCreateTable");
  if (call.stops()) return call.status();
  Require(table != nullptr, "there is no place for the handle");
  call.runtime().ledger.RecordLast("IDCreateTable", {{"flags", flags}});
  *table = call.runtime().idTables.Add(std::make_unique<IdTable>());
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL IDDestroyTable(DHANDLE table) {
  const Call call("IDDestroyTable");
  if (call.stops()) return call.status();
  call.runtime().idTables.Remove(table);
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL IDInsert(DHANDLE table, NOTEID noteId, BOOL* inserted) {
  const Call call("IDInsert", {.noteId = noteId});
  if (call.stops()) return call.status();
  const bool isNew = call.runtime().idTables.Get(table).Insert(noteId);
  WriteIfWanted<BOOL>(inserted, isNew ? 1 : 0);
  return kSuccess;
}

BOOL LARKSPAN_NOTES_CALL IDScan(DHANDLE table, BOOL first, NOTEID* noteId) {
  const Call call("IDScan");
  if (call.stops()) return 0;
  Require(noteId != nullptr, "there is no place for the note ID");
  const IdTable& scanned = call.runtime().idTables.Get(table);
  if (first == 0 && *noteId == UINT32_MAX) return 0;
  const auto next = scanned.AtOrAfter(first != 0 ? 0 : *noteId + 1);
  if (!next) return 0;
  *noteId = *next;
  return 1;
}

DWORD LARKSPAN_NOTES_CALL IDEntries(DHANDLE table) {
  const Call call("IDEntries");
  if (call.stops()) return 0;
  return call.runtime().idTables.Get(table).size();
}

}  // namespace larkspan::notes_api
