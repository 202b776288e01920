// Owners of the Notes library's handles: whoever holds one of these closes it by letting it go.
#pragma once

#include <utility>

#include "notes/NotesApi.h"
#include "notes/Release.h"

namespace larkspan {

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

}  // namespace larkspan
