// Entry points that open and close the index of a view.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

constexpr WORD kOpenAndBuild = 0;
constexpr WORD kOpenWithoutBuilding = 0x0006;

// A view that the file tells no more about than that it is one is empty.
std::shared_ptr<const View> EntriesOf(const Note& note) {
  return note.view != nullptr ? note.view : std::make_shared<const View>(ViewDescription());
}

}  // namespace

// Opening builds the index where it is missing, unless the flags say otherwise.
STATUS LARKSPAN_NOTES_CALL NIFOpenCollection(DHANDLE viewDatabase, DHANDLE dataDatabase,
                                             NOTEID view, WORD flags, DHANDLE unreadList,
                                             HCOLLECTION* collection, DHANDLE* viewNote,
                                             void* viewUnid, DHANDLE* collapsed,
                                             DHANDLE* selected) {
  const Call call("NIFOpenCollection", {.noteId = view});
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  runtime.ledger.RecordNext("NIFOpenCollection",
                            {{"view", view}, {"flags", flags}, {"unreadList", unreadList}});
  Require(collection != nullptr, "there is no place for the handle");
  Require(flags == kOpenAndBuild || flags == kOpenWithoutBuilding, "unknown flags");
  Require(viewNote == nullptr && viewUnid == nullptr && collapsed == nullptr && selected == nullptr,
          "the stand-in library gives no more than the collection");
  Database& database = runtime.DatabaseOf(viewDatabase);
  runtime.DatabaseOf(dataDatabase);
  const auto note = database.CopyNote(view);
  if (!note) return kNoteDoesNotExist;
  if (note->noteClass != kClassView) return kNoteHasNoView;
  if (flags == kOpenWithoutBuilding && !database.HasIndex(view)) return kViewHasNoIndex;
  database.BuildIndex(view);
  const DHANDLE handle = runtime.collections.Add(std::make_unique<OpenCollection>(
      OpenCollection{viewDatabase, dataDatabase, view, EntriesOf(*note)}));
  *collection = static_cast<HCOLLECTION>(handle);
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NIFCloseCollection(HCOLLECTION collection) {
  const Call call("NIFCloseCollection", {.collection = collection});
  if (call.stops()) return call.status();
  call.runtime().collections.Remove(collection);
  return kSuccess;
}

}  // namespace larkspan::notes_api
