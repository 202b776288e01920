// The search entry point. It has an object file of its own so that a library can be built that
// lacks it.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Scrambler.h"
#include "standin/StatusCodes.h"
#include "standin/Times.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

bool Matches(const NoteSummary& entry, WORD classMask, const TIMEDATE* since) {
  if ((entry.noteClass & ~kDeletedBit & classMask) == 0) return false;
  return since == nullptr || Instant(entry.modified) >= Instant(*since);
}

SearchMatch MatchOf(const NoteSummary& entry, const DatabaseProperties& database) {
  SearchMatch match = {};
  match.databaseId[0] = database.databaseId.innards[0];
  match.databaseId[1] = database.databaseId.innards[1];
  match.noteTime = entry.modified;
  match.noteId = entry.id;
  match.originatorId = entry.originatorId;
  match.noteClass = entry.noteClass;
  match.summaryLength = sizeof(ItemTable);
  return match;
}

nlohmann::json TimeOrNull(const TIMEDATE* time) {
  if (time == nullptr) return nullptr;
  return DxlTimeText(*time);
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NSFSearchExtended3(DHANDLE database, DHANDLE formula, DHANDLE filter,
                                              DWORD filterFlags, char* viewTitle, DWORD searchFlags,
                                              DWORD searchFlags1, DWORD searchFlags2,
                                              DWORD searchFlags3, DWORD searchFlags4,
                                              WORD classMask, TIMEDATE* since,
                                              SearchCallback callback, void* context,
                                              TIMEDATE* until, DHANDLE namesList) {
  Call call("NSFSearchExtended3");
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  runtime.ledger.RecordLast(
      "NSFSearchExtended3",
      {database != 0, formula, filter, filterFlags, viewTitle != nullptr, searchFlags, searchFlags1,
       searchFlags2, searchFlags3, searchFlags4, classMask, TimeOrNull(since), callback != nullptr,
       context != nullptr, until != nullptr, namesList});
  Require(callback != nullptr, "there is no callback");
  runtime.DatabaseOf(database);
  const std::shared_ptr<Database> searched = runtime.databases.Get(database).database;
  const Scrambler order(searched->entryCount());
  std::size_t given = 0;
  STATUS status = call.AfterPieces(given, false);
  for (std::size_t turn = 0; status == kSuccess && turn < searched->entryCount(); ++turn) {
    const NoteSummary entry = searched->EntryAt(order.At(turn));
    if (!Matches(entry, classMask, since)) continue;
    SearchMatch match = MatchOf(entry, searched->properties());
    ItemTable summary = {sizeof(ItemTable), 0};
    status = callback(context, &match, &summary);
    if (status == kSuccess) status = call.AfterPieces(++given, false);
  }
  if (status == kSuccess) status = call.AfterPieces(given, true);
  if (status != kSuccess) return status;
  if (until != nullptr) *until = searched->LastModified().data;
  return kSuccess;
}

}  // namespace larkspan::notes_api
