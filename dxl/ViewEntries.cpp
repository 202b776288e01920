// An entry's fields follow one another without a table of offsets, so an entry whose end cannot be
// found ends the reading of all that follow.
#include "dxl/ViewEntries.h"

#include <utility>

namespace larkspan {

namespace {

constexpr std::size_t kCounts = 3 * sizeof(std::uint32_t) + sizeof(std::uint16_t);

struct SummaryHead {
  std::uint16_t length = 0;  // Of the whole summary, this head included.
  std::uint16_t itemCount = 0;
};

struct ItemLengths {
  std::uint16_t name = 0;
  std::uint16_t value = 0;
};

bool SkipIndexPosition(ByteReader& reader) {
  constexpr std::size_t kMinAndMaxLevel = 2;
  std::uint16_t level = 0;
  return reader.Read(level) &&
         reader.Skip(kMinAndMaxLevel + (std::size_t{level} + 1) * sizeof(std::uint32_t));
}

// Names and values follow the lengths of all of them.
void ReadValues(SummaryHead head, ByteReader lengths, Summary& summary) {
  ByteReader data = lengths;
  if (!data.Skip(head.itemCount * sizeof(ItemLengths))) return;
  ItemLengths item;
  Bytes value;
  for (std::uint16_t i = 0; i < head.itemCount; ++i) {
    if (!lengths.Read(item) || !data.Skip(item.name) || !data.Take(item.value, value)) return;
    summary.values.push_back(value);
  }
  summary.isWhole = true;
}

bool ReadSummary(ByteReader& reader, Summary& summary) {
  SummaryHead head;
  ByteReader start = reader;
  if (!start.Read(head) || head.length < sizeof head) return false;
  if (!reader.Take(head.length, summary.bytes)) return false;
  ByteReader inside(summary.bytes);
  inside.Skip(sizeof head);
  ReadValues(head, inside, summary);
  return true;
}

// The entries of a view have about as many values each, so the room for them is kept.
void Clear(ViewEntry& entry) {
  std::vector<Bytes> values = std::move(entry.summary.values);
  values.clear();
  entry = {};
  entry.summary.values = std::move(values);
}

}  // namespace

bool ReadViewEntry(ByteReader& reader, ViewEntry& entry) {
  Clear(entry);
  return reader.Read(entry.noteId) && reader.Skip(kCounts) && reader.Read(entry.indent) &&
         SkipIndexPosition(reader) && ReadSummary(reader, entry.summary);
}

}  // namespace larkspan
