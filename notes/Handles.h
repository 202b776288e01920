// The Notes library's handles: taken over where the library gives them out, owned, and closed by
// letting the owner go.
#pragma once

#include <cstddef>
#include <new>
#include <utility>

#include "notes/NotesApi.h"
#include "notes/Status.h"

namespace larkspan {

// Closing of what the library opened. Each function calls the matching operation only when the
// handle is not zero, and leaves zero behind. None of them fails.
void ReleaseDatabase(notes_api::DHANDLE& database);
void ReleaseNote(notes_api::DHANDLE& note);
void ReleaseIdTable(notes_api::DHANDLE& table);
void ReleaseMemory(notes_api::DHANDLE& memory);
void ReleaseCollection(notes_api::HCOLLECTION& collection);
void ReleaseExporter(notes_api::DHANDLE& exporter);
void ReleaseKeyFile(notes_api::HKFC& keyFile);

// Owns one handle; the zero handle is no handle. Move assignment closes the handle held before.
template <typename Handle, void (*Release)(Handle&)>
class UniqueHandle {
 public:
  using Value = Handle;

  UniqueHandle() = default;
  explicit UniqueHandle(Handle handle) : handle_(handle) {}
  ~UniqueHandle() { reset(); }
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(std::exchange(other.handle_, Handle{})) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    if (this != &other) {
      reset();
      handle_ = std::exchange(other.handle_, Handle{});
    }
    return *this;
  }

  Handle get() const { return handle_; }
  void reset() { Release(handle_); }

 private:
  Handle handle_{};
};

using Database = UniqueHandle<notes_api::DHANDLE, ReleaseDatabase>;
using Note = UniqueHandle<notes_api::DHANDLE, ReleaseNote>;
using IdTable = UniqueHandle<notes_api::DHANDLE, ReleaseIdTable>;
using MemoryObject = UniqueHandle<notes_api::DHANDLE, ReleaseMemory>;
using Exporter = UniqueHandle<notes_api::DHANDLE, ReleaseExporter>;
using Collection = UniqueHandle<notes_api::HCOLLECTION, ReleaseCollection>;
using KeyFile = UniqueHandle<notes_api::HKFC, ReleaseKeyFile>;

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
