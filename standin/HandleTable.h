// Handles and what they stand for. A handle is never given out again while the numbers last, so
// that a use after close is seen as what it is. The table owns the objects. Any misuse of a handle
// is a strict failure. One thread calls.
#pragma once

#include <memory>
#include <unordered_map>
#include <utility>

#include "notes/NotesApi.h"
#include "standin/Strict.h"

namespace larkspan::standin {

// The top byte of a handle tells its kind. Collections have 16-bit handles and so no such byte.
enum class HandleKind : notes_api::DWORD {
  kCollection = 0x00000000,
  kDatabase = 0x01000000,
  kNote = 0x02000000,
  kIdTable = 0x03000000,
  kMemory = 0x04000000,
  kExporter = 0x05000000,
};

inline constexpr notes_api::DHANDLE kHandleKindMask = 0xFF000000;

// With its article.
const char* HandleKindName(HandleKind kind);

// Ends the process: says what the handle is and what was needed instead.
[[noreturn]] void FailOnHandle(notes_api::DHANDLE handle, HandleKind needed, bool wasGivenOut);

template <typename T>
class HandleTable {
 public:
  // Handles are the kind plus a number from 1 to lastNumber.
  HandleTable(HandleKind kind, notes_api::DHANDLE lastNumber)
      : kind_(kind), lastNumber_(lastNumber) {}

  notes_api::DHANDLE Add(std::unique_ptr<T> object) {
    if (objects_.size() >= lastNumber_) StrictFailure("no handles are left");
    do {
      number_ = number_ == lastNumber_ ? 1 : number_ + 1;
    } while (objects_.contains(number_));
    ++givenOut_;
    objects_.emplace(number_, std::move(object));
    return static_cast<notes_api::DHANDLE>(kind_) | number_;
  }

  bool Holds(notes_api::DHANDLE handle) const { return Find(handle) != nullptr; }

  // Null when the handle is not one of this table's open ones.
  T* Find(notes_api::DHANDLE handle) const {
    if ((handle & kHandleKindMask) != static_cast<notes_api::DHANDLE>(kind_)) return nullptr;
    const auto found = objects_.find(handle & ~kHandleKindMask);
    return found == objects_.end() ? nullptr : found->second.get();
  }

  T& Get(notes_api::DHANDLE handle) const {
    T* const object = Find(handle);
    if (object == nullptr) FailOnHandle(handle, kind_, WasGivenOut(handle));
    return *object;
  }

  std::unique_ptr<T> Remove(notes_api::DHANDLE handle) {
    Get(handle);
    return std::move(objects_.extract(handle & ~kHandleKindMask).mapped());
  }

  const std::unordered_map<notes_api::DHANDLE, std::unique_ptr<T>>& objects() const {
    return objects_;
  }

 private:
  bool WasGivenOut(notes_api::DHANDLE handle) const {
    const notes_api::DHANDLE number = handle & ~kHandleKindMask;
    return (handle & kHandleKindMask) == static_cast<notes_api::DHANDLE>(kind_) && number != 0 &&
           number <= givenOut_;
  }

  HandleKind kind_;
  notes_api::DHANDLE lastNumber_;
  notes_api::DHANDLE number_ = 0;
  notes_api::DHANDLE givenOut_ = 0;
  std::unordered_map<notes_api::DHANDLE, std::unique_ptr<T>> objects_;
};

}  // namespace larkspan::standin
