// The index of a view: the collection of its entries.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

#include "base/ByteReader.h"
#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

// Opens the index of a view; the library builds one that is missing.
Status OpenCollection(const Database& database, std::uint32_t viewId, Collection& collection);

// Opens it only when it is there.
Status OpenExistingCollection(const Database& database, std::uint32_t viewId,
                              Collection& collection);

// Entries that one read gave. Their bytes stay only as long as the visitor runs.
struct EntryBatch {
  std::uint32_t count = 0;
  Bytes bytes;
};

// Reads a collection from its first entry to its last and hands over what each read gives, one
// entry behind the other: note ID (32 bits), three counts (32 bits each), a flag and the indent
// level (16 bits each), the index position, the summary. Stops when the visitor returns false.
// Returns whether all was read and visited.
bool ReadEntries(const Collection& collection, const std::function<bool(const EntryBatch&)>& visit);

// Drops the index of a view from the database.
Status PurgeCollection(const Database& database, std::uint32_t viewId);

}  // namespace larkspan
