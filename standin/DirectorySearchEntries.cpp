// The entry point that searches a data directory.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Call.h"
#include "standin/CharacterSet.h"
#include "standin/Scrambler.h"
#include "standin/StatusCodes.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

constexpr WORD kSearchFlags = 0x0006;
constexpr WORD kClassMask = 0x200A;
constexpr WORD kDatabaseClass = 0x2002;
constexpr WORD kFolderClass = 0x2008;

SearchMatch MatchOf(const DirectoryEntry& entry) {
  SearchMatch match = {};
  match.noteTime = entry.identifier;
  match.noteClass = entry.isFolder ? kFolderClass : kDatabaseClass;
  match.summaryLength = static_cast<WORD>(entry.summary.size());
  return match;
}

// Each match and its summary lie in memory of their own that is gone afterwards.
STATUS GiveEntry(DirectoryEntry entry, SearchCallback callback, void* context) {
  SearchMatch match = MatchOf(entry);
  return callback(context, &match, reinterpret_cast<ItemTable*>(entry.summary.data()));
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NSFSearch(DHANDLE database, DHANDLE formula, char* viewTitle,
                                     WORD searchFlags, WORD classMask, TIMEDATE* since,
                                     SearchCallback callback, void* context, TIMEDATE* until) {
  Call call("NSFSearch", {.directory = database});
  if (call.stops()) return call.status();
  Runtime& runtime = call.runtime();
  const OpenDatabase& opened = runtime.databases.Get(database);
  runtime.ledger.RecordLast("NSFSearch", {{"path", NotesToUtf8(opened.path)},
                                          {"formula", formula},
                                          {"hasViewTitle", viewTitle != nullptr},
                                          {"searchFlags", searchFlags},
                                          {"classMask", classMask},
                                          {"hasSince", since != nullptr},
                                          {"hasContext", context != nullptr},
                                          {"hasUntil", until != nullptr}});
  Require(opened.directory != nullptr, "the handle is not that of a directory");
  Require(formula == 0 && viewTitle == nullptr && since == nullptr && until == nullptr,
          "directories are searched without formula, view title and times");
  Require(searchFlags == kSearchFlags, "unknown search flags");
  Require(classMask == kClassMask, "unknown class mask");
  Require(callback != nullptr, "there is no callback");
  const std::shared_ptr<const Directory> searched = opened.directory;
  const std::size_t count = searched->entryCount();
  const Scrambler order(count);
  STATUS status = call.AfterPieces(0, count == 0);
  for (std::size_t turn = 0; status == kSuccess && turn < count; ++turn) {
    status = GiveEntry(searched->EntryAt(order.At(turn)), callback, context);
    if (status == kSuccess) status = call.AfterPieces(turn + 1, turn + 1 == count);
  }
  return status;
}

}  // namespace larkspan::notes_api
