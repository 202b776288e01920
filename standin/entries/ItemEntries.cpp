// Entry points that walk, scan and delete the items of an open note.
#include "notes/NotesApi.h"
#include "standin/Buffers.h"
#include "standin/ItemValues.h"
#include "standin/Pools.h"
#include "standin/StatusCodes.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

struct PlaceOut {
  BlockId* item;
  WORD* type;
  BlockId* value;
  DWORD* valueLength;
};

std::string_view NameView(const char* name, WORD length) {
  Require(name != nullptr || length == 0, "there is no name of that length");
  return name == nullptr ? std::string_view() : std::string_view(name, length);
}

// The item after the one before; a null name stands for any.
STATUS GivePlace(Runtime& runtime, const OpenNote& note, const OpenItem* before, const char* name,
                 WORD nameLength, const PlaceOut& out) {
  const std::string_view wanted = NameView(name, nameLength);
  OpenItem* const found = note.Next(before, name == nullptr ? nullptr : &wanted);
  if (found == nullptr) return kItemNotFound;
  const ItemPlace place = PlaceItem(runtime, note, *found);
  WriteIfWanted(out.item, place.item);
  WriteIfWanted(out.type, place.type);
  WriteIfWanted(out.value, place.value);
  WriteIfWanted(out.valueLength, place.valueLength);
  return kSuccess;
}

}  // namespace

STATUS LARKSPAN_NOTES_CALL NSFItemInfo(DHANDLE note, const char* name, WORD nameLength,
                                       BlockId* item, WORD* type, BlockId* value,
                                       DWORD* valueLength) {
  const Call call("NSFItemInfo", {.note = note, .item = NameView(name, nameLength)});
  if (call.stops()) return call.status();
  const OpenNote& opened = call.runtime().notes.Get(note);
  return GivePlace(call.runtime(), opened, nullptr, name, nameLength,
                   {item, type, value, valueLength});
}

STATUS LARKSPAN_NOTES_CALL NSFItemInfoNext(DHANDLE note, BlockId previous, const char* name,
                                           WORD nameLength, BlockId* item, WORD* type,
                                           BlockId* value, DWORD* valueLength) {
  const Call call("NSFItemInfoNext", {.note = note, .item = NameView(name, nameLength)});
  if (call.stops()) return call.status();
  const OpenNote& opened = call.runtime().notes.Get(note);
  const OpenItem* const before = opened.OfPool(previous.pool);
  Require(before != nullptr, "the previous item is not in the note");
  return GivePlace(call.runtime(), opened, before, name, nameLength,
                   {item, type, value, valueLength});
}

// Walks a copy of the list, so that a callback may delete items.
STATUS LARKSPAN_NOTES_CALL NSFItemScan(DHANDLE note, ItemCallback callback, void* context) {
  const Call call("NSFItemScan", {.note = note});
  if (call.stops()) return call.status();
  Require(callback != nullptr, "there is no callback");
  const OpenNote& opened = call.runtime().notes.Get(note);
  const auto items = opened.items;
  for (const auto& item : items) {
    std::string name = item->item.name;
    Bytes value = opened.VisibleValue(item->item);
    const STATUS status = callback(0, item->item.flags, name.data(), static_cast<WORD>(name.size()),
                                   value.data(), static_cast<DWORD>(value.size()), context);
    if (status != kSuccess) return status;
  }
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NSFItemDelete(DHANDLE note, const char* name, WORD nameLength) {
  const Call call("NSFItemDelete", {.note = note, .item = NameView(name, nameLength)});
  if (call.stops()) return call.status();
  Require(name != nullptr, "the name is missing");
  OpenNote& opened = call.runtime().notes.Get(note);
  const std::string wanted(NameView(name, nameLength));
  const auto deleted = std::erase_if(opened.items, [&](const std::shared_ptr<OpenItem>& item) {
    if (item->item.name != wanted) return false;
    DropPool(call.runtime(), *item);
    return true;
  });
  return deleted == 0 ? kItemNotFound : kSuccess;
}

STATUS LARKSPAN_NOTES_CALL EnumCompositeBuffer(BlockId value, DWORD length, RecordCallback callback,
                                               void* context) {
  const Call call("EnumCompositeBuffer");
  if (call.stops()) return call.status();
  Require(callback != nullptr, "there is no callback");
  const BYTE* const bytes = ValueOfBlock(call.runtime(), value, length);
  Bytes copy(bytes, bytes + length);
  if ((copy.at(0) | copy.at(1) << 8) != kTypeComposite) return kWrongItemType;
  for (const RecordSpan& record : ReadRecords(copy)) {
    auto* const start = reinterpret_cast<char*>(copy.data() + record.offset);
    const STATUS status = callback(start, record.type, static_cast<DWORD>(record.length), context);
    if (status != kSuccess) return status;
  }
  return kSuccess;
}

}  // namespace larkspan::notes_api
