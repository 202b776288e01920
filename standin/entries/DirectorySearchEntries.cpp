// The entry point that searches a data directory.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/CharacterSet.h"
#include "standin/Scrambler.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

constexpr WORD kSearchFlags = 0x0006;
constexpr WORD kClassMask = 0x200A;
constexpr WORD kDatabaseClass = 0x2002;
constexpr WORD kFolderClass = 0x2008;

// How a caller wants to search.
struct Wanted {
  DHANDLE formula;
  const char* viewTitle;
  WORD searchFlags;
  WORD classMask;
  const TIMEDATE* since;
  SearchCallback callback;
  void* context;
  const TIMEDATE* until;
};

void Record(Runtime& runtime, const std::string& path, const Wanted& wanted) {
  runtime.ledger.RecordLast("NSFSearch", {{"path", NotesToUtf8(path)},
                                          {"formula", wanted.formula},
                                          {"hasViewTitle", wanted.viewTitle != nullptr},
                                          {"searchFlags", wanted.searchFlags},
                                          {"classMask", wanted.classMask},
                                          {"hasSince", wanted.since != nullptr},
                                          {"hasContext", wanted.context != nullptr},
                                          {"hasUntil", wanted.until != nullptr}});
}

// The one way of searching that programs use.
void RequireKnownWay(const Wanted& wanted) {
  Require(wanted.formula == 0 && wanted.viewTitle == nullptr && wanted.since == nullptr &&
              wanted.until == nullptr,
          "directories are searched without formula, view title and times");
  Require(wanted.searchFlags == kSearchFlags, "unknown search flags");
  Require(wanted.classMask == kClassMask, "unknown class mask");
  Require(wanted.callback != nullptr, "there is no callback");
}

SearchMatch MatchOf(const DirectoryEntry& entry) {
  SearchMatch match = {};
  match.noteTime = entry.identifier;
  match.noteClass = entry.isFolder ? kFolderClass : kDatabaseClass;
  match.summaryLength = static_cast<WORD>(entry.summary.size());
  return match;
}

// The match and the summary lie in memory of their own that is gone afterwards.
STATUS GiveEntry(DirectoryEntry entry, const Wanted& wanted) {
  SearchMatch match = MatchOf(entry);
  return wanted.callback(wanted.context, &match,
                         reinterpret_cast<ItemTable*>(entry.summary.data()));
}

// The directory stays even if a callback closes its handle.
STATUS GiveEntries(Call* call, std::shared_ptr<const Directory> directory, const Wanted& wanted) {
  const std::size_t count = directory->entryCount();
  const Scrambler order(count);
  STATUS status = call->AfterPieces(0, count == 0);
  for (std::size_t turn = 0; status == kSuccess && turn < count; ++turn) {
    status = GiveEntry(directory->EntryAt(order.At(turn)), wanted);
    if (status == kSuccess) status = call->AfterPieces(turn + 1, turn + 1 == count);
  }
  return status;
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NSFSearch(DHANDLE database, DHANDLE formula, char* viewTitle,
                                     WORD searchFlags, WORD classMask, TIMEDATE* since,
                                     SearchCallback callback, void* context, TIMEDATE* until) {
  Call call("NSFSearch", {.directory = database});
  if (call.stops()) return call.status();
  const OpenDatabase& opened = call.runtime().databases.Get(database);
  const Wanted wanted = {formula, viewTitle, searchFlags, classMask,
                         since,   callback,  context,     until};
  Record(call.runtime(), opened.path, wanted);
  Require(opened.directory != nullptr, "the handle is not that of a directory");
  RequireKnownWay(wanted);
  return GiveEntries(&call, opened.directory, wanted);
}

}  // namespace larkspan::notes_api
