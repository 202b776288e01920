// What the tests of the byte readers share: bytes laid out field by field, and what a writer
// prints. These tests run as Windows programs and natively under sanitizers.
#pragma once

#include <tinyxml2.h>

#include <cstddef>
#include <cstring>
#include <functional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "base/ByteReader.h"
#include "dxl/NumberSettings.h"
#include "notes/NotesApi.h"
#include "tests/standin/StandinTest.h"

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

// What a writer prints, without the printer's last line end.
inline std::string Printed(const std::function<void(tinyxml2::XMLPrinter&)>& write) {
  tinyxml2::XMLPrinter printer;
  write(printer);
  std::string text = printer.CStr();
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

// Runs the library on a machine whose numbers have a decimal comma.
class ReaderTest : public standin_test::StandinTest {
 protected:
  ReaderTest() {
    Start("StandinDecimalSeparator=,\n");
    FetchNumberSettings();
  }
};

}  // namespace larkspan
