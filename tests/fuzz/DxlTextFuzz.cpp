// Text inside an element. The input stands for UTF-8: what is none in it becomes question marks.
#include "dxl/DxlText.h"

#include <string>

#include "tests/fuzz/PrintedXml.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

struct Lead {
  unsigned char first;
  unsigned char last;
  std::size_t length;
  unsigned char smallestSecond;
  unsigned char largestSecond;
};

// Which second byte may follow which first one.
constexpr Lead kLeads[] = {
    {0x00, 0x7F, 1, 0, 0},       {0xC2, 0xDF, 2, 0x80, 0xBF}, {0xE0, 0xE0, 3, 0xA0, 0xBF},
    {0xE1, 0xEC, 3, 0x80, 0xBF}, {0xED, 0xED, 3, 0x80, 0x9F}, {0xEE, 0xEF, 3, 0x80, 0xBF},
    {0xF0, 0xF0, 4, 0x90, 0xBF}, {0xF1, 0xF3, 4, 0x80, 0xBF}, {0xF4, 0xF4, 4, 0x80, 0x8F}};

bool IsWhole(const Lead& lead, const std::uint8_t* bytes) {
  if (lead.length > 1 && (bytes[1] < lead.smallestSecond || bytes[1] > lead.largestSecond)) {
    return false;
  }
  for (std::size_t i = 2; i < lead.length; ++i) {
    if ((bytes[i] & 0xC0) != 0x80) return false;
  }
  return true;
}

// The length in bytes of the character that stands at the front, or 0 when none does.
std::size_t CharacterLength(const std::uint8_t* bytes, std::size_t size) {
  for (const Lead& lead : kLeads) {
    if (bytes[0] < lead.first || bytes[0] > lead.last) continue;
    return lead.length <= size && IsWhole(lead, bytes) ? lead.length : 0;
  }
  return 0;
}

std::string ToUtf8(const std::uint8_t* data, std::size_t size) {
  std::string utf8;
  for (std::size_t at = 0; at < size;) {
    const std::size_t length = CharacterLength(data + at, size - at);
    if (length == 0) {
      utf8.push_back('?');
      ++at;
    } else {
      utf8.append(reinterpret_cast<const char*>(data + at), length);
      at += length;
    }
  }
  return utf8;
}

}  // namespace

}  // namespace larkspan::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  const std::string utf8 = fuzz::ToUtf8(data, size);
  fuzz::CheckPrinted(
      [&](tinyxml2::XMLPrinter& printer) {
        WriteDxlText(printer, utf8.data(), static_cast<std::int32_t>(utf8.size()));
      },
      [&](const XmlNode& printed) { fuzz::CheckDxlText(printed, utf8); });
  return 0;
}
