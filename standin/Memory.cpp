#include "standin/Memory.h"

#include <algorithm>
#include <functional>

#include "standin/Strict.h"

namespace larkspan::standin {

namespace {

constexpr std::size_t kGuardSize = 16;
constexpr notes_api::BYTE kGuard = 0xFD;
constexpr notes_api::BYTE kGarbage = 0xCD;

}  // namespace

MemoryObject::MemoryObject(std::size_t size, bool isLibraryOwned)
    : bytes_(size + kGuardSize, kGuard), size_(size), isLibraryOwned_(isLibraryOwned) {
  std::fill_n(bytes_.begin(), size, kGarbage);
}

notes_api::BYTE* MemoryObject::Lock() {
  ++locks_;
  return bytes_.data();
}

void MemoryObject::Unlock() {
  Require(locks_ != 0, "the memory is not locked");
  RequireGuard();
  --locks_;
}

void MemoryObject::RequireReleasable() const {
  Require(locks_ == 0, "the memory is still locked");
  RequireGuard();
}

bool MemoryObject::Holds(const notes_api::BYTE* at) const {
  const std::less<> isBefore;
  return !isBefore(at, bytes_.data()) && isBefore(at, bytes_.data() + size_);
}

void MemoryObject::RequireHoldsAll(const notes_api::BYTE* start, std::size_t count) const {
  const std::less<> isBefore;
  const notes_api::BYTE* const end = bytes_.data() + size_;
  if (isBefore(start, bytes_.data()) || isBefore(end, start)) return;
  Require(count <= static_cast<std::size_t>(end - start), "the memory ends before what is read");
}

void MemoryObject::RequireGuard() const {
  const bool whole = std::all_of(bytes_.begin() + static_cast<std::ptrdiff_t>(size_), bytes_.end(),
                                 [](notes_api::BYTE byte) { return byte == kGuard; });
  Require(whole, "the memory was written past its end");
}

}  // namespace larkspan::standin
