// The form of these files is the system's own (winnt.h has its structures). A file begins with a
// header that tells where the next one is; that one tells how long the optional header behind it
// is, and the list of sections follows. What is where in memory, the sections tell: all places
// inside the file are reckoned from them, and looked at before they are read.
#include "console/doctor/ProgramFile.h"

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <set>
#include <type_traits>

#include "console/folder/SharedFile.h"

namespace larkspan::console {

namespace {

constexpr std::uint16_t kMostSections = 96;  // Windows itself loads no file with more.
constexpr std::size_t kLargestFile = std::size_t{1} << 30;

// What the two word sizes share of the optional header lies at different places.
struct OptionalHeader {
  std::uint32_t directoryCount;
  std::uint32_t directories;
};

template <typename Header>
constexpr OptionalHeader PlacesIn() {
  return {offsetof(Header, NumberOfRvaAndSizes), offsetof(Header, DataDirectory)};
}

std::size_t LongestOf(std::span<const std::string_view> names) {
  std::size_t longest = 0;
  for (const std::string_view name : names) longest = std::max(longest, name.size());
  return longest;
}

}  // namespace

template <typename Field>
std::optional<Field> ProgramFile::FieldAt(std::optional<std::uint64_t> place) const {
  if (!place || *place > bytes_.size()) return std::nullopt;
  Field field;
  ByteReader reader(bytes_.subspan(static_cast<std::size_t>(*place)));
  if (!reader.Read(field)) return std::nullopt;
  return field;
}

ProgramFile::ProgramFile(Bytes bytes) : bytes_(bytes) { fault_ = ReadHeaders(); }

std::string ProgramFile::ReadHeaders() {
  const std::string none = "it is no program or library of Windows";
  const auto dos = FieldAt<IMAGE_DOS_HEADER>(0);
  if (!dos || dos->e_magic != IMAGE_DOS_SIGNATURE || dos->e_lfanew < 0) return none;
  const auto signaturePlace = static_cast<std::uint64_t>(dos->e_lfanew);
  const std::uint64_t headerPlace = signaturePlace + sizeof(DWORD);
  const auto header = FieldAt<IMAGE_FILE_HEADER>(headerPlace);
  if (FieldAt<DWORD>(signaturePlace) != DWORD{IMAGE_NT_SIGNATURE} || !header) return none;
  const std::uint64_t optionalPlace = headerPlace + sizeof(IMAGE_FILE_HEADER);
  const auto magic = FieldAt<WORD>(optionalPlace);
  if (magic == WORD{IMAGE_NT_OPTIONAL_HDR32_MAGIC}) wordBits_ = 32;
  if (magic == WORD{IMAGE_NT_OPTIONAL_HDR64_MAGIC}) wordBits_ = 64;
  if (wordBits_ == 0) return none;
  processor_ = header->Machine;
  ReadExportAddress(optionalPlace, header->SizeOfOptionalHeader);
  if (!ReadSections(optionalPlace + header->SizeOfOptionalHeader, header->NumberOfSections)) {
    return "its list of sections is damaged";
  }
  return {};
}

void ProgramFile::ReadExportAddress(std::uint64_t place, std::uint16_t size) {
  const OptionalHeader places =
      wordBits_ == 64 ? PlacesIn<IMAGE_OPTIONAL_HEADER64>() : PlacesIn<IMAGE_OPTIONAL_HEADER32>();
  if (size < places.directories + sizeof(IMAGE_DATA_DIRECTORY)) return;
  const auto count = FieldAt<DWORD>(place + places.directoryCount);
  const auto directory = FieldAt<IMAGE_DATA_DIRECTORY>(place + places.directories);
  if (count.value_or(0) > 0 && directory) exports_ = directory->VirtualAddress;
}

bool ProgramFile::ReadSections(std::uint64_t place, std::uint16_t count) {
  if (count > kMostSections) return false;
  for (std::uint16_t i = 0; i < count; ++i) {
    const auto section = FieldAt<IMAGE_SECTION_HEADER>(place + i * sizeof(IMAGE_SECTION_HEADER));
    if (!section) return false;
    sections_.push_back(
        {section->VirtualAddress, section->PointerToRawData, section->SizeOfRawData});
  }
  return true;
}

std::optional<std::uint64_t> ProgramFile::PlaceOf(std::uint32_t address) const {
  for (const Section& section : sections_) {
    if (address < section.address || address - section.address >= section.size) continue;
    return std::uint64_t{section.place} + (address - section.address);
  }
  return std::nullopt;
}

// Empty when there is none, or when it is longer than any that is looked for.
std::string_view ProgramFile::NameAt(std::uint32_t address, std::size_t longest) const {
  const std::optional<std::uint64_t> place = PlaceOf(address);
  if (!place || *place >= bytes_.size()) return {};
  const std::string_view rest =
      AsText(bytes_.subspan(static_cast<std::size_t>(*place))).substr(0, longest + 1);
  const std::size_t end = rest.find('\0');
  return end == std::string_view::npos ? std::string_view() : rest.substr(0, end);
}

std::vector<std::string_view> ProgramFile::NamesMissing(
    std::span<const std::string_view> names) const {
  std::set<std::string_view> left(names.begin(), names.end());
  const std::size_t longest = LongestOf(names);
  const auto table =
      exports_ == 0 ? std::nullopt : FieldAt<IMAGE_EXPORT_DIRECTORY>(PlaceOf(exports_));
  const auto nameTable = table ? PlaceOf(table->AddressOfNames) : std::nullopt;
  const auto numberTable = table ? PlaceOf(table->AddressOfNameOrdinals) : std::nullopt;
  const auto functionTable = table ? PlaceOf(table->AddressOfFunctions) : std::nullopt;
  const bool isWhole = nameTable && numberTable && functionTable;
  for (std::uint64_t i = 0; isWhole && i < table->NumberOfNames && !left.empty(); ++i) {
    const auto name = FieldAt<DWORD>(*nameTable + i * sizeof(DWORD));
    if (!name) break;
    const auto found = left.find(NameAt(*name, longest));
    if (found == left.end()) continue;
    const auto number = FieldAt<WORD>(*numberTable + i * sizeof(WORD));
    if (!number || *number >= table->NumberOfFunctions) continue;
    const auto function = FieldAt<DWORD>(*functionTable + *number * sizeof(DWORD));
    if (function.value_or(0) != 0) left.erase(found);
  }
  std::vector<std::string_view> missing;
  std::copy_if(names.begin(), names.end(), std::back_inserter(missing),
               [&left](std::string_view name) { return left.contains(name); });
  return missing;
}

std::optional<std::vector<std::byte>> ReadProgramFile(const std::wstring& path) {
  constexpr std::size_t kAtOnce = std::size_t{1} << 20;
  SharedFile file(path);
  if (file.state() != FileReading::kRead) return std::nullopt;
  std::vector<std::byte> bytes;
  for (;;) {
    const std::size_t length = bytes.size();
    if (length > kLargestFile) return std::nullopt;
    bytes.resize(length + kAtOnce);
    const auto got = file.Read({reinterpret_cast<char*>(bytes.data() + length), kAtOnce});
    if (!got) return std::nullopt;
    bytes.resize(length + *got);
    if (*got < kAtOnce) return bytes;
  }
}

std::string WordSizeText(int bits) { return std::to_string(bits) + "-bit"; }

}  // namespace larkspan::console
