// Items in a summary: what a search and a view tell of a note without its being opened.
#pragma once

#include <cstdint>

#include "base/ByteReader.h"
#include "notes/NotesApi.h"

namespace larkspan {

struct SummaryValue {
  std::uint16_t type = 0;
  Bytes bytes;  // Without the type word; inside the summary.
};

// Finds an item by its name; false when there is none. The summary must be whole: the library
// trusts the lengths in it.
bool FindSummaryValue(const notes_api::ItemTable& summary, const char* name, SummaryValue& value);

// The same in a summary that is given by its bytes.
bool FindSummaryValue(Bytes summary, const char* name, SummaryValue& value);

}  // namespace larkspan
