// Structures that the library keeps in a layout of its own and turns into that of memory.
#pragma once

#include <array>
#include <cstdint>

#include "base/ByteReader.h"

namespace larkspan {

// The length in bytes of one view column descriptor as an item keeps it.
std::size_t ViewColumnDescriptorLength();

// Reads a view's table header and gives its number of columns. Fails, like the next, when the
// bytes are too few or the library does not tell how many are needed; the reader then stays where
// it was.
bool ReadViewTableHeader(ByteReader& reader, std::uint16_t& columnCount);

// Lengths in bytes of the four fields that a view column owns in the data behind all descriptors.
using ViewColumnFieldLengths = std::array<std::uint16_t, 4>;

bool ReadViewColumnDescriptor(ByteReader& reader, ViewColumnFieldLengths& lengths);

}  // namespace larkspan
