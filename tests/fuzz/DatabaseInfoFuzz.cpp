// The information buffer of a database and the numbers of its space usage, both in place of those
// of the library: twelve bytes of numbers, then the buffer.
#include <algorithm>
#include <cstring>
#include <limits>
#include <string>

#include "notes/NotesApi.h"
#include "notes/Properties.h"
#include "notes/Utf8Text.h"
#include "tests/fuzz/InputBytes.h"
#include "tests/fuzz/Library.h"
#include "tests/fuzz/PrintedXml.h"
#include "tests/fuzz/Target.h"

namespace larkspan::fuzz {

namespace {

using notes_api::DWORD;

constexpr std::size_t kNumbers = 3 * sizeof(DWORD);
constexpr std::size_t kMostInfo = 1024;
constexpr std::size_t kMostText = 1023;

// What the library's entry points give below.
DWORD spaceNumbers[3];
Bytes infoBytes;

std::string_view Field(std::string_view info, int field) {
  for (int passed = 0; passed < field; ++passed) {
    info.remove_prefix(std::min(info.find('\0'), info.size() - 1) + (info.empty() ? 0 : 1));
  }
  return info.substr(0, info.find('\0'));
}

std::string ExpectedField(int field) {
  std::string info(TextIn(infoBytes));
  info.resize(kMostInfo);
  return std::string(Field(info, field).substr(0, kMostText));
}

bool HasControlCharacters(std::string_view utf8) {
  return std::any_of(utf8.begin(), utf8.end(),
                     [](unsigned char byte) { return byte < 0x20 && byte != '\0'; });
}

// Attributes carry no control characters, whatever is written into them.
void CheckTitle(const std::string& text, int field) {
  Require(text == ExpectedField(field), "a text is the field as far as there is room");
  const std::string utf8 = NotesToUtf8(text, kMostText);
  Require(utf8.size() <= kMostText, "a translated text has the room that it is given");
  if (HasControlCharacters(utf8)) return;
  CheckPrinted([&](tinyxml2::XMLPrinter& printer) { printer.PushAttribute("title", utf8.c_str()); },
               [&](const XmlNode& printed) {
                 Require(printed.attributes.at("title") == utf8, "the attribute is the text");
               });
}

void CheckSpaceUsage() {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
  SpaceUsage usage;
  Require(GetSpaceUsage(Database(), usage).ok(), "the space usage is got");
  const std::uint64_t size = std::uint64_t{spaceNumbers[0]} * spaceNumbers[2] / 1024;
  Require(usage.size == std::min(size, kMost), "the size is in kilobytes");
  Require(usage.used <= usage.size, "no more is used than there is");
}

}  // namespace

}  // namespace larkspan::fuzz

// These stand before the library's own entry points of the same names.
namespace larkspan::notes_api {

using namespace larkspan::fuzz;

STATUS NSFDbInfoGet(DHANDLE, char* info) {
  std::copy_n(TextIn(infoBytes).data(), infoBytes.size(), info);
  return 0;
}

// The NUL may stand one byte past the limit.
void NSFDbInfoParse(const char* info, WORD field, char* out, WORD limit) {
  const std::string_view text = Field({info, kMostInfo}, field).substr(0, limit);
  std::copy(text.begin(), text.end(), out);
  out[text.size()] = '\0';
}

STATUS NSFDbSpaceUsageScaled(DHANDLE, DWORD* allocated, DWORD* unused, DWORD* granuleBytes) {
  *allocated = spaceNumbers[0];
  *unused = spaceNumbers[1];
  *granuleBytes = spaceNumbers[2];
  return 0;
}

}  // namespace larkspan::notes_api

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace larkspan;
  fuzz::StartLibrary();
  const Bytes input = fuzz::InputBytes(data, size);
  if (size < fuzz::kNumbers) return 0;
  std::memcpy(fuzz::spaceNumbers, input.data(), fuzz::kNumbers);
  const Bytes info = input.subspan(fuzz::kNumbers);
  fuzz::infoBytes = info.first(std::min(info.size(), fuzz::kMostInfo));
  DatabaseInformation information;
  fuzz::Require(information.Get(Database()).ok(), "the information is got");
  fuzz::CheckTitle(information.Title(), notes_api::kInfoTitle);
  fuzz::CheckTitle(information.Categories(), notes_api::kInfoCategories);
  fuzz::CheckSpaceUsage();
  return 0;
}
