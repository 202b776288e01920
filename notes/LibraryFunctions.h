// Entry points that a Notes library may lack, looked up by name so that the program starts without
// them. They are looked up once, before the operations of notes/NoteSearch.h and
// notes/Collections.h call them.
#pragma once

#include "notes/NotesApi.h"

namespace larkspan {

struct LibraryFunctions {
  notes_api::SearchExtended3Function searchExtended3 = nullptr;
  notes_api::PurgeCollectionFunction purgeCollection = nullptr;
};

// What the last look-up found. Main thread.
inline LibraryFunctions& FoundLibraryFunctions() {
  static LibraryFunctions functions;
  return functions;
}

enum class LibraryLookup { kFound, kNoLibrary, kNoSearchExtended3, kNoPurgeCollection };

// Looks the functions up in the loaded library with the given file name, in the order of the
// enumeration, and stops at the first that is missing.
LibraryLookup FindLibraryFunctions(const wchar_t* libraryName);

}  // namespace larkspan
