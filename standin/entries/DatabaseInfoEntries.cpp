// Entry points by which an open database tells what it is, how large it is and what changed in it.
#include <algorithm>
#include <cstring>
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/DatabaseInfo.h"
#include "standin/StatusCodes.h"
#include "standin/Times.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

const DatabaseProperties& PropertiesOf(const Call& call, DHANDLE database) {
  return call.runtime().DatabaseOf(database).properties();
}

// A field of an information buffer.
std::string_view InfoField(std::string_view info, WORD field) {
  for (WORD passed = 0; passed < field; ++passed) {
    const std::size_t end = info.find('\0');
    Require(end != std::string_view::npos, "the information has no such field");
    info.remove_prefix(end + 1);
  }
  const std::size_t end = info.find('\0');
  Require(end != std::string_view::npos, "the information does not end");
  return info.substr(0, end);
}

bool IsModifiedNote(const NoteSummary& entry, WORD classMask, const TIMEDATE& since) {
  if ((entry.noteClass & kDeletedBit) != 0 || (entry.noteClass & classMask) == 0) return false;
  return Instant(entry.modified) >= Instant(since);
}

std::unique_ptr<IdTable> ModifiedNotes(const Database& database, WORD classMask,
                                       const TIMEDATE& since) {
  auto table = std::make_unique<IdTable>();
  for (std::size_t i = 0; i < database.entryCount(); ++i) {
    const NoteSummary entry = database.EntryAt(i);
    if (IsModifiedNote(entry, classMask, since)) table->Insert(entry.id);
  }
  return table;
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NSFDbReplicaInfoGet(DHANDLE database, ReplicaInfo* info) {
  const Call call("NSFDbReplicaInfoGet");
  if (call.stops()) return call.status();
  Require(info != nullptr, "there is no place for the information");
  *info = PropertiesOf(call, database).replicaInfo;
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbIDGet(DHANDLE database, DatabaseId* id) {
  const Call call("NSFDbIDGet");
  if (call.stops()) return call.status();
  Require(id != nullptr, "there is no place for the ID");
  *id = PropertiesOf(call, database).databaseId;
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbInfoGet(DHANDLE database, char* info) {
  const Call call("NSFDbInfoGet");
  if (call.stops()) return call.status();
  Require(info != nullptr, "there is no place for the information");
  std::memset(info, 0, kInfoSize);
  const std::string made = MakeDatabaseInfo(PropertiesOf(call, database));
  std::memcpy(info, made.data(), made.size());
  return kSuccess;
}

// The limit counts the text alone. Information that fills its buffer is ended with a NUL behind it.
void LARKSPAN_NOTES_CALL NSFDbInfoParse(const char* info, WORD field, char* out, WORD limit) {
  const Call call("NSFDbInfoParse");
  if (call.stops()) return;
  Require(info != nullptr, "the information is missing");
  Require(field == kInfoTitle || field == kInfoCategories, "unknown field");
  WriteTextWithNul(InfoField({info, kInfoSize + 1}, field), out, std::size_t{limit} + 1);
}

STATUS LARKSPAN_NOTES_CALL NSFDbModifiedTime(DHANDLE database, TIMEDATE* data, TIMEDATE* other) {
  const Call call("NSFDbModifiedTime");
  if (call.stops()) return call.status();
  Require(data != nullptr && other != nullptr, "there is no place for the times");
  const TimePair modified = call.runtime().DatabaseOf(database).LastModified();
  *data = modified.data;
  *other = modified.other;
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFDbSpaceUsageScaled(DHANDLE database, DWORD* allocatedGranules,
                                                 DWORD* freeGranules, DWORD* granuleBytes) {
  const Call call("NSFDbSpaceUsageScaled");
  if (call.stops()) return call.status();
  Require(allocatedGranules != nullptr && freeGranules != nullptr && granuleBytes != nullptr,
          "there is no place for the numbers");
  const SpaceUsage& space = PropertiesOf(call, database).space;
  *allocatedGranules = space.allocatedGranules;
  *freeGranules = space.freeGranules;
  *granuleBytes = space.granuleBytes;
  return kSuccess;
}

// Stubs of deleted notes are not listed. Without a note that fits, the table is empty.
STATUS LARKSPAN_NOTES_CALL NSFDbGetModifiedNoteTable(DHANDLE database, WORD classMask,
                                                     TIMEDATE since, TIMEDATE* until,
                                                     DHANDLE* table) {
  const Call call("NSFDbGetModifiedNoteTable");
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  runtime.ledger.RecordLast("NSFDbGetModifiedNoteTable",
                            {{"classMask", classMask}, {"since", DxlTimeText(since)}});
  Require(until != nullptr && table != nullptr, "there is no place for a result");
  const Database& searched = runtime.DatabaseOf(database);
  *table = runtime.idTables.Add(ModifiedNotes(searched, classMask, since));
  const TimePair last = searched.LastModified();
  *until = Instant(last.data) > Instant(last.other) ? last.data : last.other;
  return kSuccess;
}

}  // namespace larkspan::notes_api
