#include "tests/support/StandinLibrary.h"

#include <windows.h>

#include <stdexcept>

#include "notes/NotesApi.h"

namespace larkspan {

void* LibraryEntryPoint(const char* name) {
  const HMODULE library = GetModuleHandleW(L"nnotes.dll");
  void* const address = reinterpret_cast<void*>(GetProcAddress(library, name));
  if (address == nullptr) throw std::runtime_error("the library is not the stand-in library");
  return address;
}

void ResetStandin() { LibraryFunction<void(LARKSPAN_NOTES_CALL*)()>("StandinReset")(); }

void SetStandinFaults(const std::string& plan) {
  LibraryFunction<void(LARKSPAN_NOTES_CALL*)(const char*)>("StandinSetFaults")(plan.c_str());
}

std::string StandinLedger() {
  return LibraryFunction<const char*(LARKSPAN_NOTES_CALL*)()>("StandinLedgerJson")();
}

}  // namespace larkspan
