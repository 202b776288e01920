// A view format is a type word, a header with the number of columns, a descriptor for each column,
// and behind all descriptors the fields of variable length: four for each column, of which the
// fourth is its constant.
#include "dxl/ViewColumns.h"

#include <cstdint>

#include "notes/Notes.h"
#include "notes/Structures.h"

namespace larkspan {

namespace {

// Moves past the four fields of a column and gives the fourth.
bool ReadConstant(ByteReader& descriptors, ByteReader& fields, Bytes& constant) {
  ViewColumnFieldLengths lengths{};
  if (!ReadViewColumnDescriptor(descriptors, lengths)) return false;
  for (const std::uint16_t length : lengths) {
    if (!fields.Take(length, constant)) return false;
  }
  return true;
}

}  // namespace

ViewColumns ReadViewColumns(const Note& viewNote) {
  const LockedItemValue format(viewNote, kViewFormatItem);
  return ParseViewFormat(format.bytes());
}

ViewColumns ParseViewFormat(Bytes format) {
  ByteReader descriptors(format);
  std::uint16_t columnCount = 0;
  if (!descriptors.Skip(sizeof(std::uint16_t)) || !ReadViewTableHeader(descriptors, columnCount)) {
    return {};
  }
  ViewColumns columns(columnCount);
  ByteReader fields = descriptors;
  if (!fields.Skip(columnCount * ViewColumnDescriptorLength())) return columns;
  Bytes constant;
  for (ColumnConstant& column : columns) {
    if (!ReadConstant(descriptors, fields, constant)) break;
    column.assign(constant.begin(), constant.end());
  }
  return columns;
}

}  // namespace larkspan
