// What the file of a program or library says of itself: its word size, and the names that it
// exports. Its bytes may come from anywhere and claim anything: nothing is read outside of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/ByteReader.h"

namespace larkspan::console {

class ProgramFile {
 public:
  // Looks at bytes that outlive it.
  explicit ProgramFile(Bytes bytes);

  // Why they are no program or library of Windows; empty: they are one.
  const std::string& fault() const { return fault_; }

  int wordBits() const { return wordBits_; }              // 32 or 64.
  std::uint16_t processor() const { return processor_; }  // The system's number for its kind.

  // Those of the names that it does not export, in their order. One that it passes on to another
  // library counts as exported.
  std::vector<std::string_view> NamesMissing(std::span<const std::string_view> names) const;

 private:
  struct Section {
    std::uint32_t address;
    std::uint32_t place;
    std::uint32_t size;
  };

  std::string ReadHeaders();
  bool ReadSections(std::uint64_t place, std::uint16_t count);
  void ReadExportAddress(std::uint64_t place, std::uint16_t size);
  std::optional<std::uint64_t> PlaceOf(std::uint32_t address) const;
  std::string_view NameAt(std::uint32_t address, std::size_t longest) const;

  template <typename Field>
  std::optional<Field> FieldAt(std::optional<std::uint64_t> place) const;

  Bytes bytes_;
  std::string fault_;
  int wordBits_ = 0;
  std::uint16_t processor_ = 0;
  std::vector<Section> sections_;
  std::uint32_t exports_ = 0;  // Where the export table is in memory; 0: there is none.
};

// All bytes of a file; none when it is not there, cannot be read, or is larger than a library is.
std::optional<std::vector<std::byte>> ReadProgramFile(const std::wstring& path);

// "64-bit".
std::string WordSizeText(int bits);

}  // namespace larkspan::console
