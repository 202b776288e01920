#include "tests/support/ReplacedEntryPoint.h"

#include <windows.h>

#include <cstdint>
#include <cstring>
#include <stdexcept>

namespace larkspan {

namespace {

std::byte* ProgramStart() { return reinterpret_cast<std::byte*>(GetModuleHandleW(nullptr)); }

template <typename T>
T* At(std::size_t offset) {
  return reinterpret_cast<T*>(ProgramStart() + offset);
}

const IMAGE_IMPORT_DESCRIPTOR* FirstImportedLibrary() {
  const auto* const dosHeader = At<IMAGE_DOS_HEADER>(0);
  const auto* const headers = At<IMAGE_NT_HEADERS>(static_cast<std::size_t>(dosHeader->e_lfanew));
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  return At<IMAGE_IMPORT_DESCRIPTOR>(directory.VirtualAddress);
}

// The slot of the name among those of one library; null when it is not there.
void** FindSlot(const IMAGE_IMPORT_DESCRIPTOR& library, const char* name) {
  const auto* names = At<IMAGE_THUNK_DATA>(library.OriginalFirstThunk);
  auto* slots = At<void*>(library.FirstThunk);
  for (; names->u1.AddressOfData != 0; ++names, ++slots) {
    if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
    const auto* const imported = At<IMAGE_IMPORT_BY_NAME>(names->u1.AddressOfData);
    if (std::strcmp(reinterpret_cast<const char*>(imported->Name), name) == 0) return slots;
  }
  return nullptr;
}

void** FindSlot(const char* libraryName, const char* name) {
  for (const auto* library = FirstImportedLibrary(); library->Name != 0; ++library) {
    if (_stricmp(At<char>(library->Name), libraryName) != 0) continue;
    if (void** const slot = FindSlot(*library, name); slot != nullptr) return slot;
  }
  throw std::runtime_error("the program does not import this entry point");
}

void* Exchange(void** slot, void* function) {
  DWORD protection = 0;
  VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
  void* const previous = *slot;
  *slot = function;
  VirtualProtect(slot, sizeof *slot, protection, &protection);
  return previous;
}

}  // namespace

ReplacedEntryPoint::ReplacedEntryPoint(const char* library, const char* name, void* function)
    : slot_(FindSlot(library, name)), original_(Exchange(slot_, function)) {}

ReplacedEntryPoint::~ReplacedEntryPoint() { Exchange(slot_, original_); }

void* OriginalEntryPoint(const char* name) {
  return reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"nnotes.dll"), name));
}

}  // namespace larkspan
