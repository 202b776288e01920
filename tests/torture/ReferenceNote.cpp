#include <cstdio>
#include <cstring>
#include <string_view>

#include "tests/torture/ReferenceLibrary.h"

namespace larkspan::torture {

namespace {

using namespace notes_api;

struct TypeSearch {
  WORD type;
  std::vector<std::string> names;
};

extern "C" STATUS LARKSPAN_NOTES_CALL TakeItemOfType(WORD, WORD, char* name, WORD nameLength,
                                                     void* value, DWORD, void* context) {
  auto& search = *static_cast<TypeSearch*>(context);
  WORD type = 0;
  std::memcpy(&type, value, sizeof type);
  if (type == search.type) search.names.emplace_back(name, nameLength);
  return 0;
}

}  // namespace

std::uint16_t ClassOf(DHANDLE note) {
  WORD noteClass = 0;
  NSFNoteGetInfo(note, kNoteInfoClass, &noteClass);
  return noteClass;
}

std::string UnidOf(DHANDLE note) {
  OriginatorId id{};
  NSFNoteGetInfo(note, kNoteInfoOriginatorId, &id);
  char text[33];
  std::snprintf(text, sizeof text, "%08X%08X%08X%08X", static_cast<unsigned>(id.file[1]),
                static_cast<unsigned>(id.file[0]), static_cast<unsigned>(id.note[1]),
                static_cast<unsigned>(id.note[0]));
  return text;
}

std::string TextOf(DHANDLE note, const char* item) {
  char text[256]{};
  const WORD length = NSFItemGetText(note, item, text, sizeof text);
  return std::string(text, length);
}

std::vector<std::string> DamagingFieldItems(DHANDLE note) {
  std::vector<std::string> items;
  const WORD count = NSFItemGetTextListEntries(note, "$Fields");
  for (WORD i = 0; i < count; ++i) {
    char field[256]{};
    const WORD length = NSFItemGetTextListEntry(note, "$Fields", i, field, 253);
    const std::string name = "$$" + std::string(field, length);
    WORD type = 0;
    if (HasItem(note, name, &type) && type != kTypeText && type != kTypeFormula) {
      items.push_back(name);
    }
  }
  return items;
}

std::vector<std::string> ItemsOfType(DHANDLE note, std::uint16_t type) {
  TypeSearch search{type, {}};
  NSFItemScan(note, TakeItemOfType, &search);
  return search.names;
}

bool HasItem(DHANDLE note, const std::string& name, std::uint16_t* type) {
  BlockId item{};
  BlockId value{};
  WORD found = 0;
  DWORD length = 0;
  const STATUS status = NSFItemInfo(note, name.data(), static_cast<WORD>(name.size()), &item,
                                    &found, &value, &length);
  if (type != nullptr) *type = found;
  return status == 0;
}

void DeleteItem(DHANDLE note, const std::string& name) {
  NSFItemDelete(note, name.data(), static_cast<WORD>(name.size()));
}

}  // namespace larkspan::torture
