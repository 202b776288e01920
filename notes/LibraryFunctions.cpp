// Which function is looked up first decides which fault an old library is told by.
#include "notes/LibraryFunctions.h"

#include <windows.h>

#include "notes/LibraryNames.h"

namespace larkspan {

namespace {

template <typename Function>
Function FindFunction(HMODULE library, const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

}  // namespace

LibraryLookup FindLibraryFunctions(const wchar_t* libraryName) {
  LibraryFunctions& functions = FoundLibraryFunctions();
  const HMODULE library = GetModuleHandleW(libraryName);
  if (library == nullptr) return LibraryLookup::kNoLibrary;
  functions.searchExtended3 =
      FindFunction<notes_api::SearchExtended3Function>(library, kSearchExtended3Name);
  if (functions.searchExtended3 == nullptr) return LibraryLookup::kNoSearchExtended3;
  functions.purgeCollection =
      FindFunction<notes_api::PurgeCollectionFunction>(library, kPurgeCollectionName);
  if (functions.purgeCollection == nullptr) return LibraryLookup::kNoPurgeCollection;
  return LibraryLookup::kFound;
}

}  // namespace larkspan
