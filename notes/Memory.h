// Memory objects of the Notes library, and access to what a handle locks.
#pragma once

#include <cstddef>

#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

// Allocates `size` bytes of unspecified content.
Status AllocateMemory(std::size_t size, MemoryObject& memory);

// Keeps a memory object locked, and its address valid, for as long as it lives. The address is null
// when the library cannot lock it; then nothing is unlocked either.
class MemoryLock {
 public:
  explicit MemoryLock(const MemoryObject& memory)
      : handle_(memory.get()),
        address_(static_cast<std::byte*>(notes_api::OSLockObject(handle_))) {}
  ~MemoryLock() {
    if (address_ != nullptr) notes_api::OSUnlockObject(handle_);
  }
  MemoryLock(const MemoryLock&) = delete;
  MemoryLock& operator=(const MemoryLock&) = delete;

  std::byte* address() const { return address_; }

 private:
  notes_api::DHANDLE handle_;
  std::byte* address_;
};

}  // namespace larkspan
