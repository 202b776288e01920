// A text that does not fit the buffers that the library's limits promise means damaged memory: the
// process ends before its line.
#include "listing/ScanLine.h"

#include <bit>
#include <cstdint>
#include <cstdio>
#include <string_view>

#include "base/BoundsCheck.h"
#include "notes/Properties.h"
#include "notes/Summary.h"
#include "notes/Utf8Text.h"
#include "notes/Values.h"

namespace larkspan {

namespace {

std::string TranslateOrEnd(std::string_view text) {
  constexpr std::size_t kBufferBytes = 1024;
  std::string utf8 = NotesToUtf8(text, kBufferBytes);
  if (utf8.size() >= kBufferBytes) EndForBoundsViolation();
  return utf8;
}

std::string TimeText(const notes_api::TIMEDATE& time) {
  constexpr std::int64_t kFirstDay = 1721424;
  constexpr std::int64_t kHundredthsPerDay = 8640000;
  const std::int64_t days = JulianDay(time) - kFirstDay;
  return std::to_string(TimeOfDay(time) + days * kHundredthsPerDay);
}

// The bits of the number, so that none of it is lost.
std::string NumberText(double number) {
  return std::to_string(std::bit_cast<std::int64_t>(number));
}

// Whether the summary has an item of the type; gives its bytes.
bool FindValueOfType(const notes_api::ItemTable& summary, const char* name, std::uint16_t type,
                     Bytes& bytes) {
  SummaryValue value;
  if (!FindSummaryValue(summary, name, value) || value.type != type) return false;
  bytes = value.bytes;
  return true;
}

std::string TitleText(const notes_api::ItemTable& summary) {
  constexpr std::size_t kMaxInfoBytes = 128;
  constexpr std::uint16_t kTitleLimit = 127;
  Bytes info;
  if (!FindValueOfType(summary, "$Info", notes_api::kTypeText, info)) return {};
  if (info.size() > kMaxInfoBytes) EndForBoundsViolation();
  const std::string ended(AsText(info));
  std::string title = TranslateOrEnd(ParseTitle(ended.c_str(), kTitleLimit));
  ReplaceControlCharacters(title);
  title.erase(title.find_last_not_of(' ') + 1);
  return title;
}

bool FindNumber(const notes_api::ItemTable& summary, const char* name, double& number) {
  Bytes bytes;
  return FindValueOfType(summary, name, notes_api::kTypeNumber, bytes) &&
         ByteReader(bytes).Read(number);
}

// The database and what it keeps in attachment storage.
std::string SizeText(const notes_api::ItemTable& summary) {
  double size = 0;
  double stored = 0;
  FindNumber(summary, "$Length", size);
  if (FindNumber(summary, "$DAOSSTOREDBYTES", stored)) size += stored;
  return NumberText(size);
}

std::string IdentifierText(const notes_api::SearchMatch& match) {
  char text[17];
  std::snprintf(text, sizeof text, "%08lX%08lX",
                static_cast<unsigned long>(match.noteTime.innards[1]),
                static_cast<unsigned long>(match.noteTime.innards[0]));
  return text;
}

}  // namespace

std::string SummaryValueText(const notes_api::ItemTable& summary, const char* name) {
  SummaryValue value;
  if (!FindSummaryValue(summary, name, value)) return {};
  ByteReader reader(value.bytes);
  notes_api::TIMEDATE time{};
  double number = 0;
  switch (value.type) {
    case notes_api::kTypeText:
      return TranslateOrEnd(AsText(value.bytes));
    case notes_api::kTypeTime:
      return reader.Read(time) ? TimeText(time) : "";
    case notes_api::kTypeNumber:
      return reader.Read(number) ? NumberText(number) : "";
    default:
      return {};
  }
}

void WriteScanLine(ListingFile& file, const notes_api::SearchMatch& match,
                   const notes_api::ItemTable& summary) {
  constexpr char kSeparator = '\t';
  std::string line = SummaryValueText(summary, "$Path");
  for (const std::string& field :
       {TitleText(summary), SummaryValueText(summary, "$DATAMOD"),
        SummaryValueText(summary, "$NONDATAMOD"), SizeText(summary), IdentifierText(match)}) {
    line += kSeparator + field;
  }
  file.WriteLine(line);
}

}  // namespace larkspan
