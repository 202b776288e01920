// A set of note IDs that stays small for the dense IDs of large databases: one bit for each ID, in
// pages that exist only where there are IDs.
#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <optional>

#include "notes/NotesApi.h"

namespace larkspan::standin {

class IdTable {
 public:
  // False when the ID was there already.
  bool Insert(notes_api::NOTEID id);

  // The smallest ID that is not below the given one.
  std::optional<notes_api::NOTEID> AtOrAfter(notes_api::NOTEID id) const;

  notes_api::DWORD size() const { return size_; }

 private:
  static constexpr std::uint32_t kPageBits = 1U << 16;
  using Page = std::array<std::uint64_t, kPageBits / 64>;

  std::map<std::uint32_t, Page> pages_;
  notes_api::DWORD size_ = 0;
};

}  // namespace larkspan::standin
