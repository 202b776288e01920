// The bytes of an entry of a view, as a reading of the index gives them. All numbers have the low
// byte first:
//
//   note ID (32 bits), three counts (32 bits each), flag (16 bits), indent (16 bits),
//   index position: level (16 bits), two bytes, a tumbler (32 bits) for each level from 0 to level,
//   summary: total length (16 bits, itself and the next word included), item count (16 bits), of
//   each item name length and value length (16 bits each), then each name followed by its value
//
// Whatever is too long for its length makes an entry that no buffer holds, so that a wrong length
// never leaves the library. Stateless; any thread may call.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "notes/NotesApi.h"
#include "standin/Bytes.h"

namespace larkspan::standin {

// One tumbler a level, from the outermost; never empty.
using IndexPosition = std::vector<notes_api::DWORD>;

struct EntryHead {
  notes_api::NOTEID id = 0;  // the top two bits tell documents from other entries
  std::array<notes_api::DWORD, 3> counts = {};
  notes_api::WORD flag = 0;
  notes_api::WORD indent = 0;
};

// The name is in the Notes character set; the value begins with its type word, or is empty.
struct SummaryItem {
  std::string name;
  Bytes value;
};

Bytes MakeSummary(const std::vector<SummaryItem>& items);
Bytes MakeEntry(const EntryHead& head, const IndexPosition& position, const Bytes& summary);

}  // namespace larkspan::standin
