#include "notes/Structures.h"

#include <cstring>

#include "notes/NotesApi.h"

namespace larkspan {

namespace {

using notes_api::WORD;

// Room for a structure in memory; only the words named below matter.
using Structure = std::array<std::byte, 256>;

constexpr std::size_t kColumnCountOffset = 2;
constexpr std::size_t kFieldLengthsOffset = 4;

// The library does not know where the bytes end, so their number is looked at before. No structure
// is empty: a length of zero is one that the library does not tell.
bool ReadStructure(ByteReader& reader, WORD kind, Structure& structure) {
  const std::size_t length = notes_api::ODSLength(kind);
  Bytes kept;
  if (length == 0 || !reader.Take(length, kept)) return false;
  void* source = const_cast<std::byte*>(kept.data());
  notes_api::ODSReadMemory(&source, kind, structure.data(), 1);
  return true;
}

}  // namespace

std::size_t ViewColumnDescriptorLength() {
  return notes_api::ODSLength(notes_api::kViewColumnFormat);
}

bool ReadViewTableHeader(ByteReader& reader, std::uint16_t& columnCount) {
  Structure header{};
  if (!ReadStructure(reader, notes_api::kViewTableFormat, header)) return false;
  std::memcpy(&columnCount, header.data() + kColumnCountOffset, sizeof columnCount);
  return true;
}

bool ReadViewColumnDescriptor(ByteReader& reader, ViewColumnFieldLengths& lengths) {
  Structure descriptor{};
  if (!ReadStructure(reader, notes_api::kViewColumnFormat, descriptor)) return false;
  std::memcpy(lengths.data(), descriptor.data() + kFieldLengthsOffset, sizeof lengths);
  return true;
}

}  // namespace larkspan
