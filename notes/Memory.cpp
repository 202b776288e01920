// What is locked is unlocked before it is freed: a lock lives in a smaller scope than its memory
// object.
#include "notes/Memory.h"

#include "notes/Handles.h"

namespace larkspan {

Status AllocateMemory(std::size_t size, MemoryObject& memory) {
  constexpr notes_api::WORD kType = 0;
  return AcquireHandle(memory, [&](notes_api::DHANDLE* address) {
    return notes_api::OSMemAlloc(kType, static_cast<notes_api::DWORD>(size), address);
  });
}

}  // namespace larkspan
