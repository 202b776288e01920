// The library goes on with its search whatever the callback returns, so the first insertion that
// fails is kept and told at the end.
#include "notes/NoteSearch.h"

#include "notes/LibraryFunctions.h"
#include "notes/NotesApi.h"
#include "notes/Values.h"

namespace larkspan {

namespace {

using notes_api::DHANDLE;
using notes_api::ItemTable;
using notes_api::SearchMatch;
using notes_api::STATUS;
using notes_api::TIME;
using notes_api::TIMEDATE;

// What the match callback is given: the address of the table's handle, which stands first.
struct MatchContext {
  DHANDLE table;
  Status insertion;
};

bool IsDeletionStub(const SearchMatch& match) {
  return static_cast<std::int16_t>(match.noteClass) < 0;
}

extern "C" STATUS LARKSPAN_NOTES_CALL InsertMatch(void* context, SearchMatch* match, ItemTable*) {
  auto& matches = *static_cast<MatchContext*>(context);
  if (IsDeletionStub(*match)) return 0;
  const Status status(notes_api::IDInsert(matches.table, match->noteId, nullptr));
  if (!status.ok() && matches.insertion.ok()) matches.insertion = status;
  return 0;
}

// Earlier than any note: 1 January 1900, midnight in the local zone.
TIMEDATE SinceTheBeginning() {
  TIME time{};
  time.year = 1900;
  time.month = 1;
  time.day = 1;
  notes_api::TimeLocalToGM(&time);
  return time.gm;
}

}  // namespace

Status SearchNotes(const Database& database, const NoteSearch& search, const IdTable& table) {
  constexpr notes_api::DWORD kSearchFlags = 0x10;
  TIMEDATE since = SinceTheBeginning();
  MatchContext context{table.get(), Status()};
  const Status status(FoundLibraryFunctions().searchExtended3(
      database.get(), 0, 0, 0, nullptr, kSearchFlags, search.extendedFlags, 0, 0, 0,
      search.classMask, &since, InsertMatch, &context, nullptr, 0));
  return status.ok() ? context.insertion : status;
}

Status ListNotesOfClass(const Database& database, std::uint16_t classMask, IdTable& notes) {
  notes_api::TIMEDATE until{};
  return AcquireHandle(notes, [&](notes_api::DHANDLE* address) {
    return notes_api::NSFDbGetModifiedNoteTable(database.get(), classMask, EarliestTime(), &until,
                                                address);
  });
}

}  // namespace larkspan
