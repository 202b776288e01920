// The summary of a document of a view whose columns all take their values from it. A good head of
// an entry stands in front of the input, so that every input is read as a summary.
#include <cstring>
#include <vector>

#include "tests/fuzz/EntryChecks.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/Library.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

constexpr std::size_t kHead = 4 + 3 * 4 + 2 + 2 + 8;
constexpr std::size_t kColumns = 20;
constexpr std::byte kNoteId{0xFA};

std::vector<std::byte> EntryWithSummary(const std::uint8_t* data, std::size_t size) {
  std::vector<std::byte> entry(kHead + size);
  entry[0] = kNoteId;
  if (size > 0) std::memcpy(entry.data() + kHead, data, size);
  return entry;
}

bool IsSummary(Bytes summary) {
  const std::size_t length = WordIn(summary, 0);
  return summary.size() >= 4 && length >= 4 && length <= summary.size();
}

}  // namespace

}  // namespace larkspan::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  fuzz::StartLibrary();
  const std::vector<std::byte> bytes = fuzz::EntryWithSummary(data, size);
  ByteReader reader{Bytes(bytes)};
  ViewEntry entry;
  const bool isRead = ReadViewEntry(reader, entry);
  fuzz::Require(isRead == fuzz::IsSummary(fuzz::InputBytes(data, size)),
                "an entry is read when its summary is inside the bytes");
  if (!isRead) return 0;
  fuzz::CheckSummary(entry.summary, Bytes(bytes));
  fuzz::CheckWrittenEntry(entry, ViewColumns(fuzz::kColumns));
  return 0;
}
