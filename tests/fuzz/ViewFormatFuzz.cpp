// A view format as the item of a view note keeps it.
#include <algorithm>

#include "dxl/ViewColumns.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/Library.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

// The stand-in library's own layout in the file, all of it in words but the last number of a
// descriptor: type word; header of kind, flags, column count and nothing; descriptors.
constexpr std::size_t kColumnCount = 6;
constexpr std::size_t kDescriptors = 10;
constexpr std::size_t kDescriptorLength = 16;

// Where a descriptor keeps the lengths of its fields, in the order in which the fields stand; the
// last is the constant.
constexpr std::size_t kFieldLengths[] = {6, 8, 2, 4};

// Formats that claim more columns than this have nothing new to show and take their time; the most
// that can be claimed is looked at.
constexpr std::size_t kManyColumns = 500;
constexpr std::size_t kMostColumns = 0xFFFF;

bool IsWorthwhile(Bytes format) {
  const std::size_t claimed = WordIn(format, kColumnCount);
  return claimed <= kManyColumns || claimed == kMostColumns;
}

void CheckColumns(const ViewColumns& columns, Bytes format) {
  if (format.size() < kDescriptors) return Require(columns.empty(), "no header, no columns");
  Require(columns.size() == WordIn(format, kColumnCount), "there are as many columns as claimed");
  std::size_t at = kDescriptors + columns.size() * kDescriptorLength;
  bool isInside = at <= format.size();
  for (std::size_t i = 0; i < columns.size(); ++i) {
    std::size_t constant = 0;
    for (const std::size_t offset : kFieldLengths) {
      constant = WordIn(format, kDescriptors + i * kDescriptorLength + offset);
      at += constant;
      isInside = isInside && at <= format.size();
    }
    const Bytes expected = isInside ? format.subspan(at - constant, constant) : Bytes();
    Require(std::equal(columns[i].begin(), columns[i].end(), expected.begin(), expected.end()),
            "a constant is the fourth field of its column");
  }
}

}  // namespace

}  // namespace larkspan::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  fuzz::StartLibrary();
  const Bytes format = fuzz::InputBytes(data, size);
  if (fuzz::IsWorthwhile(format)) fuzz::CheckColumns(ParseViewFormat(format), format);
  return 0;
}
