// An address book: for each of its name spaces a list of entries, which are items with texts.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace larkspan::standin {

// Names and texts of items, in the Notes character set. An item that an entry lacks is empty.
using BookEntry = std::map<std::string, std::string>;

// By the names of the name spaces, in the Notes character set.
using AddressBook = std::map<std::string, std::vector<BookEntry>>;

// Throws an exception derived from std::exception when the file is no address book.
AddressBook ReadAddressBook(const std::filesystem::path& file);

}  // namespace larkspan::standin
