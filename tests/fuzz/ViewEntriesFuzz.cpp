// The bytes that one read of a view's index gives, and the view's format in front of them: a word
// with the length of the format, the format, entries.
#include <algorithm>

#include "tests/fuzz/EntryChecks.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/Library.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

// A view with more columns than this has no more to show, and takes its time.
constexpr std::size_t kMostColumns = 40;

// Whether a whole entry stands at the front, and the number of its bytes.
bool FindEntry(Bytes bytes, std::size_t& length) {
  constexpr std::size_t kLevel = 4 + 3 * 4 + 2 + 2;
  if (bytes.size() < kLevel + 2) return false;
  const std::size_t summary = kLevel + 4 + 4 * (WordIn(bytes, kLevel) + 1);
  if (summary + 4 > bytes.size() || WordIn(bytes, summary) < 4) return false;
  length = summary + WordIn(bytes, summary);
  return length <= bytes.size();
}

void CheckEntries(Bytes bytes, const ViewColumns& columns) {
  ByteReader reader(bytes);
  while (true) {
    const Bytes before = reader.rest();
    ViewEntry entry;
    std::size_t length = 0;
    const bool isWhole = FindEntry(before, length);
    Require(ReadViewEntry(reader, entry) == isWhole, "an entry is read when it is whole");
    if (!isWhole) return;
    Require(reader.rest().size() == before.size() - length, "the next entry stands behind it");
    Require(entry.indent == WordIn(before, 18), "an entry has its indent");
    CheckSummary(entry.summary, before.first(length));
    CheckWrittenEntry(entry, columns);
  }
}

}  // namespace

}  // namespace larkspan::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  constexpr std::size_t kLengthWord = 2;
  fuzz::StartLibrary();
  const Bytes input = fuzz::InputBytes(data, size);
  if (input.size() < kLengthWord) return 0;
  const Bytes behind = input.subspan(kLengthWord);
  const std::size_t formatLength = std::min(fuzz::WordIn(input, 0), behind.size());
  ViewColumns columns = ParseViewFormat(behind.first(formatLength));
  columns.resize(std::min(columns.size(), fuzz::kMostColumns));
  fuzz::CheckEntries(behind.subspan(formatLength), columns);
  return 0;
}
