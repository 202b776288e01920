#include "standin/IdTable.h"

#include <bit>

namespace larkspan::standin {

namespace {

constexpr std::uint32_t kWordBits = 64;

}  // namespace

bool IdTable::Insert(notes_api::NOTEID id) {
  std::uint64_t& word = pages_[id / kPageBits][id % kPageBits / kWordBits];
  const std::uint64_t bit = std::uint64_t{1} << (id % kWordBits);
  if ((word & bit) != 0) return false;
  word |= bit;
  ++size_;
  return true;
}

std::optional<notes_api::NOTEID> IdTable::AtOrAfter(notes_api::NOTEID id) const {
  std::uint32_t start = id % kPageBits;
  for (auto page = pages_.lower_bound(id / kPageBits); page != pages_.end(); ++page) {
    if (page->first != id / kPageBits) start = 0;
    for (std::uint32_t word = start / kWordBits; word < page->second.size(); ++word) {
      std::uint64_t bits = page->second[word];
      if (word == start / kWordBits) bits &= ~std::uint64_t{0} << (start % kWordBits);
      if (bits == 0) continue;
      return page->first * kPageBits + word * kWordBits +
             static_cast<std::uint32_t>(std::countr_zero(bits));
    }
  }
  return std::nullopt;
}

}  // namespace larkspan::standin
