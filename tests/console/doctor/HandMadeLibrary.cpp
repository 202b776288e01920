#include "tests/console/doctor/HandMadeLibrary.h"

#include <algorithm>

namespace larkspan::console {

namespace {

constexpr std::size_t kOptionalPlace = kMagicPlace;

void PutText(std::vector<std::byte>& bytes, std::size_t place, const std::string& text) {
  std::transform(text.begin(), text.end(), bytes.begin() + static_cast<std::ptrdiff_t>(place),
                 [](char letter) { return static_cast<std::byte>(letter); });
}

}  // namespace

void PutNumber(std::vector<std::byte>& bytes, std::size_t place, std::uint32_t number, int size) {
  for (int i = 0; i < size; ++i) {
    bytes[place + static_cast<std::size_t>(i)] = static_cast<std::byte>(number >> (8 * i));
  }
}

// The section: the directory of 40 bytes, functions at 0x40, names at 0x80, numbers at 0xC0, and
// the texts from 0x100 on.
std::vector<std::byte> HandMadeLibrary::Bytes() const {
  std::vector<std::byte> bytes(kSectionPlace + kSectionSize);
  const std::uint32_t optionalSize = bits == 64 ? 240 : 224;
  PutText(bytes, 0, "MZ");
  PutNumber(bytes, 0x3C, kHeaderPlace, 4);
  PutText(bytes, kHeaderPlace, "PE");
  PutNumber(bytes, kMachinePlace, bits == 64 ? 0x8664 : 0x14C, 2);
  PutNumber(bytes, kHeaderPlace + 6, sections, 2);
  PutNumber(bytes, kHeaderPlace + 20, optionalSize, 2);
  PutNumber(bytes, kOptionalPlace, bits == 64 ? 0x20B : 0x10B, 2);
  const std::size_t directoryPlace = kOptionalPlace + (bits == 64 ? 112 : 96);
  PutNumber(bytes, directoryPlace - 4, directories, 4);
  PutNumber(bytes, directoryPlace, kSectionAddress, 4);
  PutNumber(bytes, directoryPlace + 4, 40, 4);
  const std::size_t sectionHeader = kOptionalPlace + optionalSize;
  PutNumber(bytes, sectionHeader + 8, kSectionSize, 4);
  PutNumber(bytes, sectionHeader + 12, kSectionAddress, 4);
  PutNumber(bytes, sectionHeader + 16, kSectionSize, 4);
  PutNumber(bytes, sectionHeader + 20, kSectionPlace, 4);
  const auto count = static_cast<std::uint32_t>(names.size());
  for (const std::size_t place : {20u, 24u}) PutNumber(bytes, kSectionPlace + place, count, 4);
  PutNumber(bytes, kSectionPlace + 28, kSectionAddress + 0x40, 4);
  PutNumber(bytes, kSectionPlace + 32, kSectionAddress + 0x80, 4);
  PutNumber(bytes, kSectionPlace + 36, kSectionAddress + 0xC0, 4);
  std::uint32_t text = 0x100;
  for (std::uint32_t i = 0; i < count; ++i) {
    PutNumber(bytes, kSectionPlace + 0x40 + 4 * i, 0x2000 + i, 4);
    PutNumber(bytes, kSectionPlace + 0x80 + 4 * i, kSectionAddress + text, 4);
    PutNumber(bytes, kSectionPlace + 0xC0 + 2 * i, i, 2);
    PutText(bytes, kSectionPlace + text, names[i]);
    text += static_cast<std::uint32_t>(names[i].size()) + 1;
  }
  return bytes;
}

}  // namespace larkspan::console
