// The result of a lookup in an address book: a memory object of the caller's, whose bytes are the
// library's own business. The caller locks it and gets from one part of it to the next by calls.
// All numbers are 32 bits with the low byte first:
//
//   mark
//   the one name that was looked up: count of its matches
//   of each match: offset and length of the texts of its two items
//   the texts
#pragma once

#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "standin/Runtime.h"

namespace larkspan::standin {

inline constexpr std::size_t kLookupItems = 2;

// The texts of the items in the Notes character set.
using LookupMatch = std::array<std::string, kLookupItems>;

std::unique_ptr<MemoryObject> MakeLookupResult(const std::vector<LookupMatch>& matches);

// A result that a caller has locked. Addresses are what callers hold; null is the end.
class LookupResult {
 public:
  // The result that the address points into. A strict failure when there is none or it is not
  // locked.
  LookupResult(const Runtime& runtime, const void* address);

  // Whether the address is the start of the result, that of its name.
  bool IsStart(const void* address) const { return address == bytes_; }
  bool IsName(const void* address) const { return address == Name(); }

  notes_api::BYTE* Name() const;
  notes_api::DWORD matchCount() const;

  // The first match, or the one behind another. A strict failure when that is no match.
  notes_api::BYTE* NextMatch(const void* previous) const;

  // The item counts from 0.
  std::string_view ItemText(const void* match, std::size_t item) const;

 private:
  std::size_t IndexOf(const void* match) const;

  notes_api::BYTE* bytes_ = nullptr;
  std::size_t size_ = 0;
};

}  // namespace larkspan::standin
