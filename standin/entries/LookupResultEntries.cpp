// Entry points that read the result of a lookup.
#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/LookupResult.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

using namespace larkspan::standin;

void* LARKSPAN_NOTES_CALL NAMELocateNextName(void* result, void* previousName, WORD* matches) {
  const Call call("NAMELocateNextName");
  if (call.stops()) return nullptr;
  const LookupResult found(call.runtime(), result);
  Require(found.IsStart(result), "this is not the start of a lookup result");
  Require(matches != nullptr, "there is no place for the number of matches");
  if (previousName != nullptr) {
    Require(found.IsName(previousName), "this is no name of the lookup result");
    return nullptr;
  }
  *matches = static_cast<WORD>(found.matchCount());
  return found.Name();
}

void* LARKSPAN_NOTES_CALL NAMELocateNextMatch(void* result, void* name, void* previousMatch) {
  const Call call("NAMELocateNextMatch");
  if (call.stops()) return nullptr;
  const LookupResult found(call.runtime(), result);
  Require(found.IsStart(result), "this is not the start of a lookup result");
  Require(found.IsName(name), "this is no name of the lookup result");
  return found.NextMatch(previousMatch);
}

// The limit counts the text alone.
STATUS LARKSPAN_NOTES_CALL NAMEGetTextItem(void* match, WORD item, WORD member, char* out,
                                           WORD limit) {
  const Call call("NAMEGetTextItem");
  if (call.stops()) return call.status();
  const LookupResult found(call.runtime(), match);
  Require(item < kLookupItems, "a match has no such item");
  Require(member == 0, "the member is not zero");
  WriteTextWithNul(found.ItemText(match, item), out, std::size_t{limit} + 1);
  return kSuccess;
}

}  // namespace larkspan::notes_api
