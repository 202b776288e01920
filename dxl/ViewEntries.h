// The entries of a view's index, read from the bytes that the library hands over.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "base/ByteReader.h"

namespace larkspan {

// What an entry says of itself without its note being opened: its values, matched to the view's
// columns by position, and items that only the library looks up by name.
struct Summary {
  // The bytes of the summary, from its length word to its end.
  Bytes bytes;

  // The values that lie inside the summary, each with its type word. They end before the first that
  // does not.
  std::vector<Bytes> values;

  // Whether all names and values that the summary claims to hold lie inside it.
  bool isWhole = false;
};

struct ViewEntry {
  // The top two bits tell documents, categories, totals and partial entries apart.
  std::uint32_t noteId = 0;

  // Level of indentation, 0 for none.
  std::uint16_t indent = 0;

  Summary summary;
};

// Reads the next entry and moves on to the one behind it. Returns false when the bytes end before
// the entry does, as the length in its summary has it, or when that length is less than that of its
// own head: then no next entry can be found either. The entry's bytes stay where they are.
bool ReadViewEntry(ByteReader& reader, ViewEntry& entry);

}  // namespace larkspan
