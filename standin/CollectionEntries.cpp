// Entry points that open and close the index of a view.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/Call.h"
#include "standin/StatusCodes.h"

namespace larkspan::notes_api {

using namespace larkspan::standin;

// Opening builds the index where it is missing.
STATUS LARKSPAN_NOTES_CALL NIFOpenCollection(DHANDLE viewDatabase, DHANDLE dataDatabase,
                                             NOTEID view, WORD flags, DHANDLE unreadList,
                                             HCOLLECTION* collection, DHANDLE* viewNote,
                                             void* viewUnid, DHANDLE* collapsed,
                                             DHANDLE* selected) {
  const Call call("NIFOpenCollection", {.noteId = view});
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  runtime.ledger.RecordLast("NIFOpenCollection",
                            {{"view", view}, {"flags", flags}, {"unreadList", unreadList}});
  Require(collection != nullptr, "there is no place for the handle");
  Require(viewNote == nullptr && viewUnid == nullptr && collapsed == nullptr && selected == nullptr,
          "the stand-in library gives no more than the collection");
  Database& database = runtime.DatabaseOf(viewDatabase);
  runtime.databases.Get(dataDatabase);
  const auto note = database.CopyNote(view);
  if (!note) return kNoteDoesNotExist;
  if (note->noteClass != kClassView) return kNoteHasNoView;
  database.BuildIndex(view);
  const DHANDLE handle = runtime.collections.Add(
      std::make_unique<OpenCollection>(OpenCollection{viewDatabase, dataDatabase, view}));
  *collection = static_cast<HCOLLECTION>(handle);
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NIFCloseCollection(HCOLLECTION collection) {
  const Call call("NIFCloseCollection");
  if (call.stops()) return call.status();
  call.runtime().collections.Remove(collection);
  return kSuccess;
}

}  // namespace larkspan::notes_api
