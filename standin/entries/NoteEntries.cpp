// Entry points that open and close notes and tell what they are.
#include <cstring>
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/Pools.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

using namespace larkspan::standin;

STATUS LARKSPAN_NOTES_CALL NSFNoteOpen(DHANDLE database, NOTEID noteId, WORD flags, DHANDLE* note) {
  const Call call("NSFNoteOpen", {.noteId = noteId});
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  runtime.ledger.RecordLast("NSFNoteOpen", {{"noteId", noteId}, {"flags", flags}});
  Require(note != nullptr, "there is no place for the handle");
  auto copied = runtime.DatabaseOf(database).CopyNote(noteId);
  if (!copied) return kNoteDoesNotExist;
  *note = runtime.notes.Add(std::make_unique<OpenNote>(database, std::move(*copied)));
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFNoteClose(DHANDLE note) {
  const Call call("NSFNoteClose", {.note = note});
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  for (const auto& item : runtime.notes.Get(note).items) DropPool(runtime, *item);
  runtime.notes.Remove(note);
  return kSuccess;
}

void LARKSPAN_NOTES_CALL NSFNoteGetInfo(DHANDLE note, WORD member, void* out) {
  const Call call("NSFNoteGetInfo", {.note = note});
  if (call.stops()) return;
  const Note& opened = call.runtime().notes.Get(note).note;
  Require(out != nullptr, "there is no place for the information");
  switch (member) {
    case kNoteInfoOriginatorId:
      std::memcpy(out, &opened.originatorId, sizeof opened.originatorId);
      return;
    case kNoteInfoClass:
      std::memcpy(out, &opened.noteClass, sizeof opened.noteClass);
      return;
    default:
      StrictFailure("unknown member " + std::to_string(member));
  }
}

BOOL LARKSPAN_NOTES_CALL NSFNoteIsSignedOrSealed(DHANDLE note, BOOL* isSigned, BOOL* isSealed) {
  const Call call("NSFNoteIsSignedOrSealed", {.note = note});
  if (call.stops()) return 0;
  const Note& opened = call.runtime().notes.Get(note).note;
  const BOOL isSignedValue = opened.isSigned ? 1 : 0;
  const BOOL isSealedValue = opened.sealedFor.empty() ? 0 : 1;
  WriteIfWanted(isSigned, isSignedValue);
  WriteIfWanted(isSealed, isSealedValue);
  return isSignedValue | isSealedValue;
}

}  // namespace larkspan::notes_api
