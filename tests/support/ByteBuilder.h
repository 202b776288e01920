// Bytes laid out field by field, as the Notes library hands them over.
#pragma once

#include <cstddef>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "base/ByteReader.h"
#include "notes/NotesApi.h"

namespace larkspan {

// Bytes in memory of exactly their size, so that a sanitizer sees each read behind them.
using ExactBytes = std::vector<std::byte>;

inline ExactBytes FirstBytes(const ExactBytes& bytes, std::size_t length) {
  return ExactBytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
}

class ByteBuilder {
 public:
  template <typename Field>
  ByteBuilder& Add(Field field) {
    static_assert(std::is_trivially_copyable_v<Field>);
    const auto* bytes = reinterpret_cast<const std::byte*>(&field);
    bytes_.insert(bytes_.end(), bytes, bytes + sizeof field);
    return *this;
  }

  ByteBuilder& Word(unsigned int value) { return Add(static_cast<notes_api::WORD>(value)); }
  ByteBuilder& Dword(notes_api::DWORD value) { return Add(value); }

  ByteBuilder& Text(std::string_view text) {
    const auto* bytes = reinterpret_cast<const std::byte*>(text.data());
    bytes_.insert(bytes_.end(), bytes, bytes + text.size());
    return *this;
  }

  ByteBuilder& Append(const ExactBytes& bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
  }

  std::size_t size() const { return bytes_.size(); }
  ExactBytes Build() const { return ExactBytes(bytes_.begin(), bytes_.end()); }

 private:
  ExactBytes bytes_;
};

// A text value.
inline ExactBytes TextValue(std::string_view text) {
  return ByteBuilder().Word(notes_api::kTypeText).Text(text).Build();
}

// A name and a value of a summary.
using SummaryItem = std::pair<std::string_view, ExactBytes>;

inline ExactBytes SummaryBytes(const std::vector<SummaryItem>& items) {
  ByteBuilder lengths;
  ByteBuilder data;
  for (const auto& [name, value] : items) {
    lengths.Word(static_cast<unsigned int>(name.size()));
    lengths.Word(static_cast<unsigned int>(value.size()));
    data.Text(name).Append(value);
  }
  const auto length = static_cast<unsigned int>(4 + lengths.size() + data.size());
  return ByteBuilder()
      .Word(length)
      .Word(static_cast<unsigned int>(items.size()))
      .Append(lengths.Build())
      .Append(data.Build())
      .Build();
}

}  // namespace larkspan
