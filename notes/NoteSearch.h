// Listing the notes of a database.
#pragma once

#include <cstdint>

#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

struct NoteSearch {
  std::uint16_t classMask = 0;
  std::uint32_t extendedFlags = 0;
};

// Inserts into the table the ID of every note of the classes, leaving out the stubs of deleted
// notes. Fails too when a note found could not be inserted, since it would be lost without a word.
Status SearchNotes(const Database& database, const NoteSearch& search, const IdTable& table);

// Fills a new table with the IDs of all notes of the classes in the mask.
Status ListNotesOfClass(const Database& database, std::uint16_t classMask, IdTable& notes);

}  // namespace larkspan
