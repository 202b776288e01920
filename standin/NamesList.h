// The list of names with which a database is opened for full access, as callers lay it out:
//
//   0   16 bits   number of names
//   2   8 bytes   zero
//   10  2 bytes   no matter
//   12  32 bits   authentication word
//   16            the names, each ended with a NUL
#pragma once

#include <string>

#include "notes/NotesApi.h"
#include "standin/Memory.h"

namespace larkspan::standin {

inline constexpr notes_api::DWORD kFullAccessAuthentication = 7;

struct NamesList {
  notes_api::DWORD authentication = 0;
  std::string name;
};

// A strict failure when the memory does not hold a list of exactly one name.
NamesList ReadNamesList(MemoryObject& memory);

}  // namespace larkspan::standin
