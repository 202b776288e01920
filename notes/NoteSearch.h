// Listing the notes of a database.
#pragma once

#include <cstdint>

#include "notes/Handles.h"
#include "notes/LibraryFunctions.h"
#include "notes/Status.h"

namespace larkspan {

struct NoteSearch {
  std::uint16_t classMask = 0;
  std::uint32_t extendedFlags = 0;
};

// Inserts into the table the ID of every note of the classes, leaving out the stubs of deleted
// notes. Fails too when a note found could not be inserted, since it would be lost without a word.
Status SearchNotes(const LibraryFunctions& functions, const Database& database,
                   const NoteSearch& search, const IdTable& table);

}  // namespace larkspan
