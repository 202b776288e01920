// The file of a library, laid out by hand: headers, one section, and in it an export table.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace larkspan::console {

struct HandMadeLibrary {
  int bits = 64;
  std::vector<std::string> names = {"Alpha", "Beta", "Gamma"};
  std::uint16_t sections = 1;
  std::uint32_t directories = 16;

  std::vector<std::byte> Bytes() const;
};

// The places in those bytes, for tests that change them.
inline constexpr std::size_t kHeaderPlace = 0x80;         // Of "PE".
inline constexpr std::size_t kMachinePlace = 0x84;        // Two bytes.
inline constexpr std::size_t kMagicPlace = 0x98;          // Two bytes: the word size.
inline constexpr std::size_t kSectionPlace = 0x400;       // Where the section lies in the file, ...
inline constexpr std::uint32_t kSectionAddress = 0x1000;  // ... and in memory.
inline constexpr std::size_t kSectionSize = 0x200;

void PutNumber(std::vector<std::byte>& bytes, std::size_t place, std::uint32_t number, int size);

}  // namespace larkspan::console
