// Entry points that give the texts of items.
#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/ItemValues.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

// Null when the note has no readable item of that name and type.
const OpenItem* ReadableItem(const OpenNote& note, const char* name, WORD type) {
  const OpenItem* const found = note.Find(RequireText(name, kTextSize));
  if (found == nullptr || found->item.type() != type || note.IsHidden(found->item)) return nullptr;
  return found;
}

std::vector<std::string> TextListOf(const OpenNote& note, const char* name) {
  const OpenItem* const found = ReadableItem(note, name, kTypeTextList);
  if (found != nullptr) return ReadTextList(found->item.value);
  const OpenItem* const single = ReadableItem(note, name, kTypeText);
  if (single != nullptr) return {ReadText(single->item.value)};
  return {};
}

}  // namespace

// Of a list this gives the first entry.
WORD LARKSPAN_NOTES_CALL NSFItemGetText(DHANDLE note, const char* name, char* out, WORD size) {
  const Call call("NSFItemGetText", {.note = note, .item = PeekText(name, kTextSize)});
  if (call.stops()) return 0;
  const auto texts = TextListOf(call.runtime().notes.Get(note), name);
  return WriteTextWithNul(texts.empty() ? std::string_view() : texts[0], out, size);
}

WORD LARKSPAN_NOTES_CALL NSFItemGetTextListEntries(DHANDLE note, const char* name) {
  const Call call("NSFItemGetTextListEntries", {.note = note, .item = PeekText(name, kTextSize)});
  if (call.stops()) return 0;
  return static_cast<WORD>(TextListOf(call.runtime().notes.Get(note), name).size());
}

WORD LARKSPAN_NOTES_CALL NSFItemGetTextListEntry(DHANDLE note, const char* name, WORD index,
                                                 char* out, WORD size) {
  const Call call("NSFItemGetTextListEntry", {.note = note, .item = PeekText(name, kTextSize)});
  if (call.stops()) return 0;
  const auto texts = TextListOf(call.runtime().notes.Get(note), name);
  return index < texts.size() ? WriteText(texts[index], out, size) : static_cast<WORD>(0);
}

}  // namespace larkspan::notes_api
