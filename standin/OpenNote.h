// A note that a caller holds open: its own copy of the note, whose items can be deleted and
// decrypted without touching the database, and the pools through which item values are reached.
#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "notes/NotesApi.h"
#include "standin/Note.h"

namespace larkspan::standin {

struct OpenItem {
  Item item;
  notes_api::DHANDLE pool = 0;  // zero until a caller asks for the item's place
};

struct OpenNote {
  OpenNote(notes_api::DHANDLE databaseHandle, Note copied);

  bool IsHidden(const Item& item) const;

  // The bytes a caller may see: garbled ones while the item is encrypted.
  std::vector<notes_api::BYTE> VisibleValue(const Item& item) const;

  // The next item of that name (null = any) after the one before; null before = from the start.
  // Null at the end.
  OpenItem* Next(const OpenItem* before, const std::string_view* name) const;

  // Null when there is no such item.
  OpenItem* Find(std::string_view name) const { return Next(nullptr, &name); }
  OpenItem* OfPool(notes_api::DHANDLE pool) const;

  notes_api::DHANDLE database;
  Note note;  // its items have moved to the list below
  std::vector<std::shared_ptr<OpenItem>> items;
  bool isDecrypted = false;
};

}  // namespace larkspan::standin
