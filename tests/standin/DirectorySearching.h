// Short forms of searching a data directory, for tests.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "notes/NotesApi.h"

namespace larkspan::standin_test {

using namespace larkspan::notes_api;

struct FoundEntry {
  SearchMatch match = {};
  std::map<std::string, std::string> items;  // values with their type words

  // The text of an item in UTF-8; a failed expectation when there is no such text.
  std::string Text(const std::string& item) const;
};

struct FoundEntries {
  STATUS status = 0;
  STATUS answer = 0;  // of the callback to each match
  std::vector<FoundEntry> entries;

  // The items $Path in UTF-8, in the order in which they were found.
  std::vector<std::string> Paths() const;

  // The entry with this item $Path; a failed expectation and an empty one when there is none.
  FoundEntry At(const std::string& path) const;
};

// The path is UTF-8.
STATUS OpenDirectory(const std::string& path, DHANDLE* directory);

FoundEntries SearchDirectory(DHANDLE directory, STATUS answer = 0);

// Opens, searches, closes.
FoundEntries SearchPath(const std::string& path);

}  // namespace larkspan::standin_test
