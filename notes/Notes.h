// Open notes and their items. Item names are in the Notes character set.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/ByteReader.h"
#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

inline constexpr std::uint16_t kDocumentClass = 1;
inline constexpr std::uint16_t kFormClass = 4;

Status OpenNote(const Database& database, std::uint32_t noteId, Note& note);

// The note's class, a mask of which a plain document has only kDocumentClass.
std::uint16_t GetNoteClass(const Note& note);

// The four words of the originator ID that identify the note in all replicas.
notes_api::OriginatorId GetOriginatorId(const Note& note);

// Whether the note's content is encrypted.
bool IsSealed(const Note& note);

// An item's text, at most `capacity` - 1 bytes; empty when there is no such item.
std::string GetItemText(const Note& note, const char* name, std::size_t capacity);

bool HasItem(const Note& note, std::string_view name);

// The data type of the item with this name; false when there is none.
bool GetItemType(const Note& note, std::string_view name, std::uint16_t& type);

// Keeps the value of a note's item locked for as long as it lives; the note must stay open.
class LockedItemValue {
 public:
  LockedItemValue(const Note& note, std::string_view name);
  ~LockedItemValue();
  LockedItemValue(const LockedItemValue&) = delete;
  LockedItemValue& operator=(const LockedItemValue&) = delete;

  // The value, its type word included; empty when the note has no such item.
  Bytes bytes() const { return bytes_; }

 private:
  notes_api::DHANDLE pool_ = 0;
  Bytes bytes_;
};

// Whether a rich-text item of the note holds a record of this type. The items are walked until one
// is found.
bool HasRichTextRecord(const Note& note, std::int16_t recordType);

// The number of entries of a text-list item; 0 when there is no such item.
std::uint16_t CountTextListEntries(const Note& note, const char* name);

// One entry of a text-list item, counted from 0; at most maxBytes bytes.
std::string GetTextListEntry(const Note& note, const char* name, std::uint16_t index,
                             std::size_t maxBytes);

// The names of all items whose value has this data type, in the note's order.
std::vector<std::string> FindItemsOfType(const Note& note, std::uint16_t type);

// Deletes the items with this name from the open note; the database is not changed. A note without
// them is left as it is.
void DeleteItem(const Note& note, std::string_view name);

}  // namespace larkspan
