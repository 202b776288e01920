// A view's entries are laid out once, as many as fit into one reading. A reading writes the note
// IDs of its entries over those of the one before.
#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "bench/Content.h"
#include "bench/library/Entries.h"

namespace larkspan::bench {

namespace {

using notes_api::DWORD;
using notes_api::WORD;

template <typename Number>
void Append(std::string& bytes, Number number) {
  bytes.append(reinterpret_cast<const char*>(&number), sizeof number);
}

// A time's first word is its variant, by which the library tells its fields.
std::string ValueOf(std::uint32_t column, std::uint32_t variant) {
  std::string value;
  switch (KindOfColumn(column)) {
    case ValueKind::kText:
      Append<WORD>(value, notes_api::kTypeText);
      return value + TextOf(variant);
    case ValueKind::kNumber:
      Append<WORD>(value, notes_api::kTypeNumber);
      Append<double>(value, variant);
      return value;
    case ValueKind::kTime:
      Append<WORD>(value, notes_api::kTypeTime);
      Append(value, notes_api::TIMEDATE{{variant, 0}});
      return value;
    case ValueKind::kTextList:
      Append<WORD>(value, notes_api::kTypeTextList);
      Append<WORD>(value, 2);
      Append(value, static_cast<WORD>(TextOf(variant).size()));
      Append(value, static_cast<WORD>(SecondTextOf(variant).size()));
      return value + TextOf(variant) + SecondTextOf(variant);
  }
  return value;
}

std::string SummaryOf(std::uint32_t variant) {
  constexpr std::string_view kName = "$C";
  const std::uint32_t columns = ProcessWorkload().columns;
  std::string lengths;
  std::string data;
  for (std::uint32_t column = 0; column < columns; ++column) {
    const std::string value = ValueOf(column, variant);
    Append(lengths, static_cast<WORD>(kName.size()));
    Append(lengths, static_cast<WORD>(value.size()));
    data.append(kName).append(value);
  }
  std::string summary;
  Append(summary, static_cast<WORD>(2 * sizeof(WORD) + lengths.size() + data.size()));
  Append(summary, static_cast<WORD>(columns));
  return summary + lengths + data;
}

// Note ID, three counts, flag, indent, a position of one level, summary.
std::string EntryOf(std::uint32_t variant) {
  constexpr std::size_t kBeforeSummary = 4 + 3 * 4 + 2 + 2 + 4 + 4;
  return std::string(kBeforeSummary, '\0') + SummaryOf(variant);
}

// All entries have the same length, and each reading begins with the first variant.
struct Batch {
  std::vector<char> bytes;
  std::uint32_t stride = 0;
  std::uint32_t entries = 0;
};

Batch MakeBatch() {
  constexpr std::size_t kMost = 65520;
  Batch batch;
  batch.stride = static_cast<std::uint32_t>(EntryOf(0).size());
  batch.entries = static_cast<std::uint32_t>(kMost / batch.stride) / kVariants * kVariants;
  for (std::uint32_t i = 0; i < batch.entries; ++i) {
    const std::string entry = EntryOf(i % kVariants);
    batch.bytes.insert(batch.bytes.end(), entry.begin(), entry.end());
  }
  return batch;
}

Batch& EntryBatch() {
  static Batch batch = MakeBatch();
  return batch;
}

// A type word, a header and a descriptor for each column, of which none has a constant.
constexpr WORD kHeaderBytes = 4;
constexpr WORD kDescriptorBytes = 12;

std::string MakeViewFormat() {
  std::string format(2 + sizeof(WORD), '\0');
  Append(format, static_cast<WORD>(ProcessWorkload().columns));
  return format + std::string(ProcessWorkload().columns * kDescriptorBytes, '\0');
}

std::string& ViewFormat() {
  static std::string format = MakeViewFormat();
  return format;
}

// Writes the note IDs from that number on. Returns how many entries there are.
DWORD NumberEntries(DWORD first) {
  Batch& batch = EntryBatch();
  const DWORD count = std::min(batch.entries, ProcessWorkload().entries - first);
  for (DWORD i = 0; i < count; ++i) {
    const notes_api::NOTEID noteId = first + i + 1;
    std::memcpy(batch.bytes.data() + i * batch.stride, &noteId, sizeof noteId);
  }
  return count;
}

}  // namespace

void* EntryBufferAddress() { return EntryBatch().bytes.data(); }

void* ViewFormatAddress() { return ViewFormat().data(); }

DWORD ViewFormatLength() { return static_cast<DWORD>(ViewFormat().size()); }

}  // namespace larkspan::bench

namespace larkspan::notes_api {

using bench::kSuccess;

STATUS LARKSPAN_NOTES_CALL NIFOpenCollection(DHANDLE, DHANDLE, NOTEID, WORD, DHANDLE,
                                             HCOLLECTION* collection, DHANDLE*, void*, DHANDLE*,
                                             DHANDLE*) {
  *collection = 1;
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NIFCloseCollection(HCOLLECTION) { return kSuccess; }

// The first tumbler counts the entries that were read.
STATUS LARKSPAN_NOTES_CALL NIFReadEntries(HCOLLECTION, CollectionPosition* position, WORD, DWORD,
                                          WORD, DWORD, DWORD, DHANDLE* buffer, WORD* bufferLength,
                                          DWORD* skipped, DWORD* returned, WORD* signalFlags) {
  DWORD& read = position->tumbler[0];
  *returned = bench::NumberEntries(read);
  read += *returned;
  *skipped = 1;
  *buffer = bench::kEntryBuffer;
  *bufferLength = static_cast<WORD>(*returned * bench::EntryBatch().stride);
  *signalFlags = read < bench::ProcessWorkload().entries ? kSignalMoreToDo : 0;
  return kSuccess;
}

STATUS LARKSPAN_NOTES_CALL NIFPurgeCollection(DHANDLE, DHANDLE, NOTEID) { return kSuccess; }

WORD LARKSPAN_NOTES_CALL ODSLength(WORD kind) {
  return kind == kViewTableFormat ? bench::kHeaderBytes : bench::kDescriptorBytes;
}

void LARKSPAN_NOTES_CALL ODSReadMemory(void** source, WORD kind, void* out, WORD) {
  const WORD length = ODSLength(kind);
  std::memcpy(out, *source, length);
  *source = static_cast<char*>(*source) + length;
}

}  // namespace larkspan::notes_api
