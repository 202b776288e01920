// Walks over items end with the first call that fails, which is also how the library tells the end.
// Item values are copied or read only while they are locked.
#include "notes/Notes.h"

#include <algorithm>
#include <cstring>
#include <exception>

#include "notes/Handles.h"

namespace larkspan {

namespace {

using notes_api::BlockId;
using notes_api::DWORD;
using notes_api::STATUS;
using notes_api::WORD;

struct ItemInfo {
  BlockId item{};
  WORD type = 0;
  BlockId value{};
  DWORD valueLength = 0;
};

Status GetItemInfo(const Note& note, std::string_view name, ItemInfo& info) {
  return Status(notes_api::NSFItemInfo(note.get(), name.data(), static_cast<WORD>(name.size()),
                                       &info.item, &info.type, &info.value, &info.valueLength));
}

Status GetFirstItem(const Note& note, ItemInfo& info) { return GetItemInfo(note, {}, info); }

Status GetNextItem(const Note& note, ItemInfo& info) {
  const BlockId previous = info.item;
  return Status(notes_api::NSFItemInfoNext(note.get(), previous, nullptr, 0, &info.item, &info.type,
                                           &info.value, &info.valueLength));
}

struct RecordSearch {
  std::int16_t wanted;
  bool found;
};

extern "C" STATUS LARKSPAN_NOTES_CALL LookAtRecord(char*, WORD type, DWORD, void* context) {
  auto& search = *static_cast<RecordSearch*>(context);
  if (static_cast<std::int16_t>(type) == search.wanted) search.found = true;
  return 0;
}

bool ItemHasRecord(const ItemInfo& info, std::int16_t recordType) {
  RecordSearch search{recordType, false};
  notes_api::EnumCompositeBuffer(info.value, info.valueLength, LookAtRecord, &search);
  return search.found;
}

struct TypeSearch {
  std::uint16_t wanted;
  std::vector<std::string> names;
  std::exception_ptr exception;
};

// The library's code stands between this function and its caller, so an exception is handed over.
extern "C" STATUS LARKSPAN_NOTES_CALL LookAtItem(WORD, WORD, char* name, WORD nameLength,
                                                 void* value, DWORD valueLength, void* context) {
  auto& search = *static_cast<TypeSearch*>(context);
  WORD type = 0;
  if (value == nullptr || valueLength < sizeof type) return 0;
  std::memcpy(&type, value, sizeof type);
  try {
    if (type == search.wanted) search.names.emplace_back(name, nameLength);
  } catch (...) {
    search.exception = std::current_exception();
  }
  return 0;
}

}  // namespace

Status OpenNote(const Database& database, std::uint32_t noteId, Note& note) {
  constexpr WORD kFlags = 0;
  return AcquireHandle(note, [&](notes_api::DHANDLE* address) {
    return notes_api::NSFNoteOpen(database.get(), noteId, kFlags, address);
  });
}

std::uint16_t GetNoteClass(const Note& note) {
  WORD noteClass = 0;
  notes_api::NSFNoteGetInfo(note.get(), notes_api::kNoteInfoClass, &noteClass);
  return noteClass;
}

notes_api::OriginatorId GetOriginatorId(const Note& note) {
  notes_api::OriginatorId originatorId{};
  notes_api::NSFNoteGetInfo(note.get(), notes_api::kNoteInfoOriginatorId, &originatorId);
  return originatorId;
}

bool IsSealed(const Note& note) {
  notes_api::BOOL isSigned = 0;
  notes_api::BOOL isSealed = 0;
  notes_api::NSFNoteIsSignedOrSealed(note.get(), &isSigned, &isSealed);
  return isSealed != 0;
}

std::string GetItemText(const Note& note, const char* name, std::size_t capacity) {
  std::string text(capacity, '\0');
  const std::size_t length =
      notes_api::NSFItemGetText(note.get(), name, text.data(), static_cast<WORD>(capacity));
  text.resize(std::min(length, capacity));
  return text;
}

bool HasItem(const Note& note, std::string_view name) {
  ItemInfo info;
  return GetItemInfo(note, name, info).ok();
}

bool GetItemType(const Note& note, std::string_view name, std::uint16_t& type) {
  ItemInfo info;
  if (!GetItemInfo(note, name, info).ok()) return false;
  type = info.type;
  return true;
}

LockedItemValue::LockedItemValue(const Note& note, std::string_view name) {
  ItemInfo info;
  if (!GetItemInfo(note, name, info).ok()) return;
  const auto* pool = static_cast<const std::byte*>(notes_api::OSLockObject(info.value.pool));
  if (pool == nullptr) return;
  pool_ = info.value.pool;
  bytes_ = Bytes(pool + info.value.block, info.valueLength);
}

LockedItemValue::~LockedItemValue() {
  if (pool_ != 0) notes_api::OSUnlockObject(pool_);
}

bool HasRichTextRecord(const Note& note, std::int16_t recordType) {
  ItemInfo info;
  for (Status status = GetFirstItem(note, info); status.ok(); status = GetNextItem(note, info)) {
    if (info.type == notes_api::kTypeComposite && ItemHasRecord(info, recordType)) return true;
  }
  return false;
}

std::uint16_t CountTextListEntries(const Note& note, const char* name) {
  return notes_api::NSFItemGetTextListEntries(note.get(), name);
}

std::string GetTextListEntry(const Note& note, const char* name, std::uint16_t index,
                             std::size_t maxBytes) {
  std::string entry(maxBytes, '\0');
  const std::size_t length = notes_api::NSFItemGetTextListEntry(
      note.get(), name, index, entry.data(), static_cast<WORD>(maxBytes));
  entry.resize(std::min(length, maxBytes));
  return entry;
}

std::vector<std::string> FindItemsOfType(const Note& note, std::uint16_t type) {
  TypeSearch search{type, {}, nullptr};
  notes_api::NSFItemScan(note.get(), LookAtItem, &search);
  if (search.exception) std::rethrow_exception(search.exception);
  return std::move(search.names);
}

void DeleteItem(const Note& note, std::string_view name) {
  notes_api::NSFItemDelete(note.get(), name.data(), static_cast<WORD>(name.size()));
}

}  // namespace larkspan
