#include "standin/ItemValues.h"

#include <bit>
#include <cstdint>

namespace larkspan::standin {

namespace {

constexpr std::size_t kEntrySize = 8;
constexpr std::size_t kListHeadSize = 4;
constexpr notes_api::BYTE kScrambler = 0x5A;

std::uint64_t ReadAt(const Bytes& bytes, std::size_t offset, std::size_t size) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < size; ++i) {
    number |= static_cast<std::uint64_t>(bytes.at(offset + i)) << (8 * i);
  }
  return number;
}

Bytes Typed(notes_api::WORD type) {
  Bytes value;
  AppendNumber(&value, type, 2);
  return value;
}

void AppendTime(Bytes* out, const notes_api::TIMEDATE& time) {
  AppendNumber(out, time.innards[0], 4);
  AppendNumber(out, time.innards[1], 4);
}

void AppendNumberEntry(Bytes* out, double number) {
  AppendNumber(out, std::bit_cast<std::uint64_t>(number), kEntrySize);
}

void AppendListHead(Bytes* out, std::size_t count, std::size_t pairCount) {
  AppendNumber(out, count, 2);
  AppendNumber(out, pairCount, 2);
}

std::string TextAt(const Bytes& value, std::size_t offset, std::size_t length) {
  const auto start = value.begin() + static_cast<std::ptrdiff_t>(offset);
  return {start, start + static_cast<std::ptrdiff_t>(length)};
}

// The 8-byte entries of a single value or of a list.
std::vector<std::uint64_t> ReadEntries(const Bytes& value, bool isList) {
  const std::size_t count = isList ? ReadAt(value, kTypeWordSize, 2) : 1;
  const std::size_t start = kTypeWordSize + (isList ? kListHeadSize : 0);
  std::vector<std::uint64_t> entries;
  for (std::size_t i = 0; i < count; ++i) {
    entries.push_back(ReadAt(value, start + i * kEntrySize, kEntrySize));
  }
  return entries;
}

bool HasType(const Bytes& value, notes_api::WORD type) { return ReadAt(value, 0, 2) == type; }

}  // namespace

Bytes MakeTextValue(notes_api::WORD type, std::string_view text) {
  Bytes value = Typed(type);
  AppendText(&value, text);
  return value;
}

Bytes MakeTextListValue(const std::vector<std::string>& texts) {
  Bytes value = Typed(notes_api::kTypeTextList);
  AppendNumber(&value, texts.size(), 2);
  for (const std::string& text : texts) AppendNumber(&value, text.size(), 2);
  for (const std::string& text : texts) AppendText(&value, text);
  return value;
}

Bytes MakeNumberValue(double number) {
  Bytes value = Typed(notes_api::kTypeNumber);
  AppendNumberEntry(&value, number);
  return value;
}

Bytes MakeNumberListValue(const std::vector<double>& numbers,
                          const std::vector<NumberRange>& pairs) {
  Bytes value = Typed(notes_api::kTypeNumberRange);
  AppendListHead(&value, numbers.size(), pairs.size());
  for (const double number : numbers) AppendNumberEntry(&value, number);
  for (const auto& [lower, upper] : pairs) {
    AppendNumberEntry(&value, lower);
    AppendNumberEntry(&value, upper);
  }
  return value;
}

Bytes MakeTimeValue(const notes_api::TIMEDATE& time) {
  Bytes value = Typed(notes_api::kTypeTime);
  AppendTime(&value, time);
  return value;
}

Bytes MakeTimeListValue(const std::vector<notes_api::TIMEDATE>& times,
                        const std::vector<TimeRange>& pairs) {
  Bytes value = Typed(notes_api::kTypeTimeRange);
  AppendListHead(&value, times.size(), pairs.size());
  for (const notes_api::TIMEDATE& time : times) AppendTime(&value, time);
  for (const auto& [lower, upper] : pairs) {
    AppendTime(&value, lower);
    AppendTime(&value, upper);
  }
  return value;
}

Bytes MakeRichTextValue(const std::vector<RichTextRecord>& records) {
  Bytes value = Typed(notes_api::kTypeComposite);
  for (const RichTextRecord& record : records) {
    AppendNumber(&value, record.type, 2);
    AppendNumber(&value, 0, 2);
    AppendNumber(&value, kRecordHeadSize + record.data.size(), 4);
    value.insert(value.end(), record.data.begin(), record.data.end());
  }
  return value;
}

Bytes MakeRawValue(notes_api::WORD type, const Bytes& data) {
  Bytes value = Typed(type);
  value.insert(value.end(), data.begin(), data.end());
  return value;
}

std::string ReadText(const Bytes& value) {
  return TextAt(value, kTypeWordSize, value.size() - kTypeWordSize);
}

std::vector<std::string> ReadTextList(const Bytes& value) {
  const std::size_t count = ReadAt(value, kTypeWordSize, 2);
  std::size_t offset = kTypeWordSize + 2 + 2 * count;
  std::vector<std::string> texts;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t length = ReadAt(value, kTypeWordSize + 2 + 2 * i, 2);
    texts.push_back(TextAt(value, offset, length));
    offset += length;
  }
  return texts;
}

std::vector<double> ReadNumbers(const Bytes& value) {
  std::vector<double> numbers;
  for (const std::uint64_t entry :
       ReadEntries(value, HasType(value, notes_api::kTypeNumberRange))) {
    numbers.push_back(std::bit_cast<double>(entry));
  }
  return numbers;
}

std::vector<notes_api::TIMEDATE> ReadTimes(const Bytes& value) {
  std::vector<notes_api::TIMEDATE> times;
  for (const std::uint64_t entry : ReadEntries(value, HasType(value, notes_api::kTypeTimeRange))) {
    times.push_back(
        {{static_cast<notes_api::DWORD>(entry), static_cast<notes_api::DWORD>(entry >> 32)}});
  }
  return times;
}

std::vector<RecordSpan> ReadRecords(const Bytes& value) {
  std::vector<RecordSpan> records;
  for (std::size_t offset = kTypeWordSize; offset < value.size();) {
    RecordSpan record;
    record.type = static_cast<notes_api::WORD>(ReadAt(value, offset, 2));
    record.offset = offset;
    record.length = ReadAt(value, offset + 4, 4);
    records.push_back(record);
    offset += record.length;
  }
  return records;
}

Bytes Scrambled(const Bytes& value) {
  Bytes scrambled = value;
  for (std::size_t i = kTypeWordSize; i < scrambled.size(); ++i) scrambled[i] ^= kScrambler;
  return scrambled;
}

}  // namespace larkspan::standin
