#include "standin/AddressBook.h"

#include <nlohmann/json.hpp>

#include "standin/JsonValues.h"

namespace larkspan::standin {

namespace {

using nlohmann::json;

BookEntry ReadEntry(const json& from) {
  BookEntry entry;
  for (const auto& [name, text] : from.items()) {
    entry[NotesTextValue(name)] = text.is_null() ? "" : NotesTextValue(text);
  }
  return entry;
}

}  // namespace

AddressBook ReadAddressBook(const std::filesystem::path& file) {
  AddressBook book;
  for (const auto& [nameSpace, entries] : ReadJsonFile(file).items()) {
    if (nameSpace == "comment") continue;
    std::vector<BookEntry>& list = book[NotesTextValue(nameSpace)];
    for (const json& entry : entries) list.push_back(ReadEntry(entry));
  }
  return book;
}

}  // namespace larkspan::standin
