#include "standin/AddressBook.h"

#include <nlohmann/json.hpp>

#include "standin/JsonValues.h"

namespace larkspan::standin {

namespace {

using nlohmann::json;

BookEntry ReadEntry(const json& from) {
  BookEntry entry;
  for (const auto& [name, text] : from.get_ref<const json::object_t&>()) {
    entry[NotesTextValue(name)] = text.is_null() ? "" : NotesTextValue(text);
  }
  return entry;
}

}  // namespace

AddressBook ReadAddressBook(const std::filesystem::path& file) {
  const json from = ReadJsonFile(file);
  AddressBook book;
  for (const auto& [nameSpace, entries] : from.get_ref<const json::object_t&>()) {
    if (nameSpace == "comment") continue;
    std::vector<BookEntry>& list = book[NotesTextValue(nameSpace)];
    for (const json& entry : entries.get_ref<const json::array_t&>())
      list.push_back(ReadEntry(entry));
  }
  return book;
}

}  // namespace larkspan::standin
