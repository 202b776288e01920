// Reading fields from bytes that someone else laid out. Nothing is ever read outside the bytes
// given, whatever counts and lengths they claim.
#pragma once

#include <cstddef>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>

namespace larkspan {

using Bytes = std::span<const std::byte>;

// The bytes as text, which stays where they are.
inline std::string_view AsText(Bytes bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

// Walks over bytes that must outlive it. What fails leaves the place as it was.
class ByteReader {
 public:
  explicit ByteReader(Bytes bytes) : rest_(bytes) {}

  Bytes rest() const { return rest_; }

  // Copies the next field, of any alignment. Returns false when fewer bytes are left.
  template <typename Field>
  bool Read(Field& field) {
    static_assert(std::is_trivially_copyable_v<Field>);
    Bytes bytes;
    if (!Take(sizeof field, bytes)) return false;
    std::memcpy(&field, bytes.data(), sizeof field);
    return true;
  }

  // Gives the next bytes, which stay where they are. Returns false when fewer are left.
  bool Take(std::size_t length, Bytes& bytes) {
    if (length > rest_.size()) return false;
    bytes = rest_.first(length);
    rest_ = rest_.subspan(length);
    return true;
  }

  bool Skip(std::size_t length) {
    Bytes skipped;
    return Take(length, skipped);
  }

 private:
  Bytes rest_;
};

}  // namespace larkspan
