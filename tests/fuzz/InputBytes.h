// The bytes of an input, taken apart without the product's reader, so that what the product makes
// of them can be told beforehand. Numbers have the low byte first.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/ByteReader.h"

namespace larkspan::fuzz {

inline Bytes InputBytes(const std::uint8_t* data, std::size_t size) {
  return std::as_bytes(std::span(data, size));
}

// Zero where the bytes end before the word does.
inline std::size_t WordIn(Bytes bytes, std::size_t offset) {
  if (offset + 2 > bytes.size()) return 0;
  return std::to_integer<std::size_t>(bytes[offset]) |
         std::to_integer<std::size_t>(bytes[offset + 1]) << 8;
}

inline std::string_view TextIn(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

inline bool IsInside(Bytes inner, Bytes outer) {
  return inner.empty() || (inner.data() >= outer.data() &&
                           inner.data() + inner.size() <= outer.data() + outer.size());
}

}  // namespace larkspan::fuzz
