// Taking over a handle that the Notes library gives out.
#pragma once

#include <cstddef>
#include <new>

#include "notes/Status.h"

namespace larkspan {

// A slot of eight zeroed bytes whose low bytes are the handle, so that a library with wider handles
// than declared here cannot write past it.
template <typename Handle>
class OutSlot {
 public:
  static_assert(sizeof(Handle) <= 8);

  Handle* address() { return handle_; }
  Handle value() const { return *handle_; }

 private:
  alignas(8) std::byte room_[8]{};
  Handle* handle_ = new (room_) Handle{};
};

// Runs an operation that writes a handle to the address it is given and returns a status. On
// success the owner holds that handle, on failure none; what it held before is closed.
template <typename Owner, typename Operation>
Status AcquireHandle(Owner& owner, Operation operation) {
  OutSlot<typename Owner::Value> slot;
  const Status status(operation(slot.address()));
  owner = status.ok() ? Owner(slot.value()) : Owner();
  return status;
}

}  // namespace larkspan
