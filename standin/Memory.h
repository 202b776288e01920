// Memory objects: what OSMemAlloc gives out, and the pools in which the library itself keeps item
// values. Bytes lie at a fixed address; a guard behind them shows a write past their end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "notes/NotesApi.h"

namespace larkspan::standin {

class MemoryObject {
 public:
  // Filled with garbage, so that nobody relies on zeroes.
  MemoryObject(std::size_t size, bool isLibraryOwned);

  std::size_t size() const { return size_; }
  bool isLibraryOwned() const { return isLibraryOwned_; }
  std::uint32_t locks() const { return locks_; }

  // Locks nest. Taking one lock too many away is a strict failure.
  notes_api::BYTE* Lock();
  void Unlock();

  // Fails when the object is locked or was written past its end: to be called before it goes.
  void RequireReleasable() const;

  notes_api::BYTE* bytes() { return bytes_.data(); }

  // Whether the byte belongs to this object.
  bool Holds(const notes_api::BYTE* at) const;

  // A strict failure when the bytes start in this object, or at its end, and reach past its end.
  void RequireHoldsAll(const notes_api::BYTE* start, std::size_t count) const;

 private:
  void RequireGuard() const;

  std::vector<notes_api::BYTE> bytes_;  // the guard included
  std::size_t size_;
  bool isLibraryOwned_;
  std::uint32_t locks_ = 0;
};

}  // namespace larkspan::standin
