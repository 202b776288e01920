#include "console/listing/ScanFile.h"

#include <algorithm>
#include <array>
#include <bit>
#include <string_view>

#include "console/listing/ScanValues.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

enum Field { kPath, kTitle, kData, kDesign, kSize, kIdentifier, kFields };

std::vector<std::string_view> SplitAtTabs(std::string_view line) {
  std::vector<std::string_view> fields;
  while (true) {
    const std::size_t tab = line.find('\t');
    fields.push_back(line.substr(0, tab));
    if (tab == line.npos) return fields;
    line.remove_prefix(tab + 1);
  }
}

bool IsIdentifier(std::string_view field) {
  constexpr std::size_t kDigits = 16;
  return field.size() == kDigits && field.find_first_not_of("0123456789ABCDEF") == field.npos;
}

bool EndsAsDatabase(std::string_view path) {
  constexpr std::array<std::string_view, 3> kEndings = {".nsf", ".ntf", ".box"};
  const auto lower = [](char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
  };
  return std::any_of(kEndings.begin(), kEndings.end(), [&](std::string_view ending) {
    return path.size() >= ending.size() &&
           std::equal(ending.begin(), ending.end(), path.end() - std::ssize(ending),
                      [&](char wanted, char letter) { return wanted == lower(letter); });
  });
}

// No field says it: of a folder the library tells nothing but its path.
bool IsFolder(const std::vector<std::string_view>& fields) {
  return fields[kTitle].empty() && fields[kData].empty() && fields[kDesign].empty() &&
         fields[kSize] == "0" && !EndsAsDatabase(fields[kPath]);
}

// Control characters are bytes of the Notes character set, in which they begin other letters.
std::optional<std::string> TrustedText(std::string_view bytes) {
  const bool isPlain = std::none_of(bytes.begin(), bytes.end(), [](char byte) {
    return static_cast<unsigned char>(byte) < ' ' || byte == '\x7F';
  });
  if (bytes.empty() || !isPlain || !IsUtf8(bytes)) return std::nullopt;
  return std::string(bytes);
}

class ScanReader {
 public:
  explicit ScanReader(ScanFile& scan) : scan_(scan) {}

  void Take(const TextLine& line) {
    if (!line.isWhole) return scan_.faults.Add(line, "is not whole");
    if (line.number > 1) return TakeEntry(line);
    scan_.hasFirstLine = true;
    scan_.serverNamed = TrustedText(line.text);
  }

 private:
  void TakeEntry(const TextLine& line) {
    const std::vector<std::string_view> fields = SplitAtTabs(line.text);
    if (fields.size() != kFields) return scan_.faults.Add(line, "does not have six fields");
    const std::optional<std::int64_t> size = WholeNumberOf(fields[kSize]);
    if (!size) return scan_.faults.Add(line, "has no size");
    if (!IsIdentifier(fields[kIdentifier])) return scan_.faults.Add(line, "has no identifier");
    if (!IsUtf8(line.text)) return scan_.faults.Add(line, "is no UTF-8");
    scan_.entries.push_back({std::string(fields[kPath]), std::string(fields[kTitle]),
                             TimeOf(fields[kData]), TimeOf(fields[kDesign]),
                             std::bit_cast<double>(*size), std::string(fields[kIdentifier]),
                             IsFolder(fields)});
  }

  ScanFile& scan_;
};

}  // namespace

ScanFile ReadScanFile(const std::wstring& path) {
  ScanFile scan;
  ScanReader reader(scan);
  scan.reading = ReadTextLines(path, [&](const TextLine& line) { reader.Take(line); });
  return scan;
}

}  // namespace larkspan::console
