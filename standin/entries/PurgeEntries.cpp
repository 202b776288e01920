// The entry point that drops the index of a view. It has an object file of its own so that a
// library can be built that lacks it.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

using namespace larkspan::standin;

STATUS LARKSPAN_NOTES_CALL NIFPurgeCollection(DHANDLE viewDatabase, DHANDLE dataDatabase,
                                              NOTEID view) {
  const Call call("NIFPurgeCollection", {.noteId = view});
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  Database& database = runtime.DatabaseOf(viewDatabase);
  runtime.DatabaseOf(dataDatabase);
  runtime.ledger.RecordLast("NIFPurgeCollection",
                            {{"view", view}, {"hadIndex", database.HasIndex(view)}});
  const auto& open = runtime.collections.objects();
  const bool isInUse = std::any_of(open.begin(), open.end(), [&](const auto& entry) {
    return entry.second->view == view &&
           &runtime.DatabaseOf(entry.second->viewDatabase) == &database;
  });
  if (isInUse) return kCollectionInUse;
  const auto note = database.CopyNote(view);
  if (!note) return kNoteDoesNotExist;
  if (note->noteClass != kClassView) return kNoteHasNoView;
  database.DropIndex(view);
  return kSuccess;
}

}  // namespace larkspan::notes_api
