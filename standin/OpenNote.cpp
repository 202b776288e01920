#include "standin/OpenNote.h"

#include <utility>

#include "standin/ItemValues.h"

namespace larkspan::standin {

OpenNote::OpenNote(notes_api::DHANDLE databaseHandle, Note copied)
    : database(databaseHandle), note(std::move(copied)) {
  for (Item& item : note.items) {
    items.push_back(std::make_shared<OpenItem>(OpenItem{std::move(item), 0}));
  }
  note.items.clear();
}

bool OpenNote::IsHidden(const Item& item) const {
  return item.isSealed && !note.sealedFor.empty() && !isDecrypted;
}

std::vector<notes_api::BYTE> OpenNote::VisibleValue(const Item& item) const {
  return IsHidden(item) ? Scrambled(item.value) : item.value;
}

OpenItem* OpenNote::Next(const OpenItem* before, const std::string_view* name) const {
  bool passed = before == nullptr;
  for (const auto& item : items) {
    if (passed && (name == nullptr || item->item.name == *name)) return item.get();
    passed = passed || item.get() == before;
  }
  return nullptr;
}

OpenItem* OpenNote::OfPool(notes_api::DHANDLE pool) const {
  for (const auto& item : items) {
    if (pool != 0 && item->pool == pool) return item.get();
  }
  return nullptr;
}

}  // namespace larkspan::standin
