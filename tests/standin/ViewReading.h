// Short forms of reading a view, for tests: buffers copied and freed at once, and the entries in
// them taken apart by the layout that programs know.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "notes/NotesApi.h"

namespace larkspan::standin_test {

using namespace larkspan::notes_api;

// What one reading gave.
struct ReadBuffer {
  STATUS status = 0;
  bool hasBuffer = false;
  std::string bytes;
  DWORD skipped = 0;
  DWORD returned = 0;
  WORD signalFlags = 0;
};

// Names, and values with their type words.
using SummaryItems = std::vector<std::pair<std::string, std::string>>;

struct Entry {
  NOTEID id = 0;
  std::array<DWORD, 3> counts = {};
  WORD flag = 0;
  WORD indent = 0;
  std::vector<DWORD> position;
  SummaryItems items;

  bool operator==(const Entry&) const = default;
};

// The items of a summary; a failed expectation when it does not fill the bytes exactly.
SummaryItems SummaryIn(std::string_view bytes);

HCOLLECTION OpenCollection(DHANDLE database, NOTEID view);

ReadBuffer ReadEntries(HCOLLECTION collection, CollectionPosition* position,
                       DWORD returnCount = 0xFFFFFFFF);

// As many entries as were returned; a failed expectation when they do not fill the buffer exactly.
std::vector<Entry> EntriesIn(const ReadBuffer& buffer);

// Opens, reads to the end and closes.
std::vector<Entry> ReadView(DHANDLE database, NOTEID view);

}  // namespace larkspan::standin_test
