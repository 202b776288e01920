#include "standin/Pools.h"

#include <algorithm>

namespace larkspan::standin {

namespace {

constexpr notes_api::WORD kItemBlock = 4;
constexpr notes_api::WORD kValueBlock = 24;

void MakePool(Runtime& runtime, const OpenNote& note, OpenItem& item) {
  const auto value = note.VisibleValue(item.item);
  auto pool = std::make_unique<MemoryObject>(kValueBlock + value.size(), true);
  std::copy(value.begin(), value.end(), pool->bytes() + kValueBlock);
  item.pool = runtime.memory.Add(std::move(pool));
}

}  // namespace

ItemPlace PlaceItem(Runtime& runtime, const OpenNote& note, OpenItem& item) {
  if (item.pool == 0) MakePool(runtime, note, item);
  ItemPlace place = {};
  place.item = {item.pool, kItemBlock};
  place.value = {item.pool, kValueBlock};
  place.type = item.item.type();
  place.valueLength = static_cast<notes_api::DWORD>(item.item.value.size());
  return place;
}

void DropPool(Runtime& runtime, OpenItem& item) {
  if (item.pool == 0) return;
  runtime.memory.Get(item.pool).RequireReleasable();
  runtime.memory.Remove(item.pool);
  item.pool = 0;
}

const notes_api::BYTE* ValueOfBlock(Runtime& runtime, const notes_api::BlockId& value,
                                    notes_api::DWORD length) {
  MemoryObject& pool = runtime.memory.Get(value.pool);
  Require(pool.isLibraryOwned() && value.block == kValueBlock, "the block is no item's value");
  Require(length == pool.size() - kValueBlock, "the length is not that of the value");
  return pool.bytes() + kValueBlock;
}

}  // namespace larkspan::standin
