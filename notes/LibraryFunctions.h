// Entry points that a Notes library may lack, looked up by name so that the program starts without
// them.
#pragma once

#include "notes/NotesApi.h"

namespace larkspan {

struct LibraryFunctions {
  notes_api::SearchExtended3Function searchExtended3 = nullptr;
  notes_api::PurgeCollectionFunction purgeCollection = nullptr;
};

enum class LibraryLookup { kFound, kNoLibrary, kNoSearchExtended3, kNoPurgeCollection };

// Looks the functions up in the loaded library with the given file name, in the order of the
// enumeration, and stops at the first that is missing.
LibraryLookup FindLibraryFunctions(const wchar_t* libraryName, LibraryFunctions& functions);

}  // namespace larkspan
