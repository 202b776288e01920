// A text that does not fit the buffers that the library's limits promise means damaged memory: the
// process ends before its line.
#include "listing/ScanLine.h"

#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <span>
#include <string_view>

#include "base/BoundsCheck.h"
#include "base/HexText.h"
#include "notes/Properties.h"
#include "notes/Summary.h"
#include "notes/Utf8Text.h"
#include "notes/Values.h"

namespace larkspan {

namespace {

void AppendTranslated(std::string_view text, std::string& line) {
  std::array<char, 1024> buffer;
  const std::string_view utf8 = NotesToUtf8(text, buffer);
  if (utf8.size() >= buffer.size()) EndForBoundsViolation();
  line.append(utf8);
}

void AppendInteger(std::int64_t number, std::string& line) {
  std::array<char, 20> digits;
  char* const end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  line.append(digits.data(), end);
}

void AppendTime(const notes_api::TIMEDATE& time, std::string& line) {
  constexpr std::int64_t kFirstDay = 1721424;
  constexpr std::int64_t kHundredthsPerDay = 8640000;
  const std::int64_t days = JulianDay(time) - kFirstDay;
  AppendInteger(TimeOfDay(time) + days * kHundredthsPerDay, line);
}

// The bits of the number, so that none of it is lost.
void AppendNumber(double number, std::string& line) {
  AppendInteger(std::bit_cast<std::int64_t>(number), line);
}

// Whether the summary has an item of the type; gives its bytes.
bool FindValueOfType(const notes_api::ItemTable& summary, const char* name, std::uint16_t type,
                     Bytes& bytes) {
  SummaryValue value;
  if (!FindSummaryValue(summary, name, value) || value.type != type) return false;
  bytes = value.bytes;
  return true;
}

void AppendTitle(const notes_api::ItemTable& summary, std::string& line) {
  constexpr std::size_t kMaxInfoBytes = 128;
  constexpr std::uint16_t kTitleLimit = 127;
  Bytes info;
  if (!FindValueOfType(summary, "$Info", notes_api::kTypeText, info)) return;
  if (info.size() > kMaxInfoBytes) EndForBoundsViolation();
  std::array<char, kMaxInfoBytes + 1> ended{};
  AsText(info).copy(ended.data(), kMaxInfoBytes);
  InformationField title;
  const std::size_t start = line.size();
  AppendTranslated(ParseTitle(ended.data(), kTitleLimit, title), line);
  ReplaceControlCharacters(std::span(line).subspan(start));
  while (line.size() > start && line.back() == ' ') line.pop_back();
}

bool FindNumber(const notes_api::ItemTable& summary, const char* name, double& number) {
  Bytes bytes;
  return FindValueOfType(summary, name, notes_api::kTypeNumber, bytes) &&
         ByteReader(bytes).Read(number);
}

// The database and what it keeps in attachment storage.
void AppendSize(const notes_api::ItemTable& summary, std::string& line) {
  double size = 0;
  double stored = 0;
  FindNumber(summary, "$Length", size);
  if (FindNumber(summary, "$DAOSSTOREDBYTES", stored)) size += stored;
  AppendNumber(size, line);
}

void AppendIdentifier(const notes_api::SearchMatch& match, std::string& line) {
  line.append(EightHexDigits(match.noteTime.innards[1]));
  line.append(EightHexDigits(match.noteTime.innards[0]));
}

}  // namespace

void AppendSummaryValue(const notes_api::ItemTable& summary, const char* name, std::string& line) {
  SummaryValue value;
  if (!FindSummaryValue(summary, name, value)) return;
  ByteReader reader(value.bytes);
  notes_api::TIMEDATE time{};
  double number = 0;
  if (value.type == notes_api::kTypeText) {
    AppendTranslated(AsText(value.bytes), line);
  } else if (value.type == notes_api::kTypeTime && reader.Read(time)) {
    AppendTime(time, line);
  } else if (value.type == notes_api::kTypeNumber && reader.Read(number)) {
    AppendNumber(number, line);
  }
}

void ScanLines::Write(const notes_api::SearchMatch& match, const notes_api::ItemTable& summary) {
  constexpr char kSeparator = '\t';
  line_.clear();
  AppendSummaryValue(summary, "$Path", line_);
  line_.push_back(kSeparator);
  AppendTitle(summary, line_);
  line_.push_back(kSeparator);
  AppendSummaryValue(summary, "$DATAMOD", line_);
  line_.push_back(kSeparator);
  AppendSummaryValue(summary, "$NONDATAMOD", line_);
  line_.push_back(kSeparator);
  AppendSize(summary, line_);
  line_.push_back(kSeparator);
  AppendIdentifier(match, line_);
  file_.WriteLine(line_);
}

}  // namespace larkspan
