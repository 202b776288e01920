#include "standin/ItemValues.h"

#include <bit>
#include <cstdint>

#include "standin/Note.h"

namespace larkspan::standin {

namespace {

constexpr std::size_t kEntrySize = 8;
constexpr std::size_t kListHeadSize = 4;
constexpr notes_api::BYTE kScrambler = 0x5A;

void Append(Bytes* out, std::uint64_t number, int size) {
  for (int i = 0; i < size; ++i) out->push_back(static_cast<notes_api::BYTE>(number >> (8 * i)));
}

void AppendBytes(Bytes* out, std::string_view bytes) {
  out->insert(out->end(), bytes.begin(), bytes.end());
}

std::uint64_t ReadAt(const Bytes& bytes, std::size_t offset, std::size_t size) {
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < size; ++i) {
    number |= static_cast<std::uint64_t>(bytes.at(offset + i)) << (8 * i);
  }
  return number;
}

Bytes Typed(notes_api::WORD type) {
  Bytes value;
  Append(&value, type, 2);
  return value;
}

void AppendTime(Bytes* out, const notes_api::TIMEDATE& time) {
  Append(out, time.innards[0], 4);
  Append(out, time.innards[1], 4);
}

void AppendListHead(Bytes* out, std::size_t count) {
  Append(out, count, 2);
  Append(out, 0, 2);
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
  AppendBytes(&value, text);
  return value;
}

Bytes MakeTextListValue(const std::vector<std::string>& texts) {
  Bytes value = Typed(kTypeTextList);
  Append(&value, texts.size(), 2);
  for (const std::string& text : texts) Append(&value, text.size(), 2);
  for (const std::string& text : texts) AppendBytes(&value, text);
  return value;
}

Bytes MakeNumberValue(double number) {
  Bytes value = Typed(kTypeNumber);
  Append(&value, std::bit_cast<std::uint64_t>(number), kEntrySize);
  return value;
}

Bytes MakeNumberListValue(const std::vector<double>& numbers) {
  Bytes value = Typed(kTypeNumberList);
  AppendListHead(&value, numbers.size());
  for (const double number : numbers) {
    Append(&value, std::bit_cast<std::uint64_t>(number), kEntrySize);
  }
  return value;
}

Bytes MakeTimeValue(const notes_api::TIMEDATE& time) {
  Bytes value = Typed(kTypeTime);
  AppendTime(&value, time);
  return value;
}

Bytes MakeTimeListValue(const std::vector<notes_api::TIMEDATE>& times) {
  Bytes value = Typed(kTypeTimeList);
  AppendListHead(&value, times.size());
  for (const notes_api::TIMEDATE& time : times) AppendTime(&value, time);
  return value;
}

Bytes MakeRichTextValue(const std::vector<RichTextRecord>& records) {
  Bytes value = Typed(notes_api::kTypeComposite);
  for (const RichTextRecord& record : records) {
    Append(&value, record.type, 2);
    Append(&value, 0, 2);
    Append(&value, kRecordHeadSize + record.data.size(), 4);
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
  for (const std::uint64_t entry : ReadEntries(value, HasType(value, kTypeNumberList))) {
    numbers.push_back(std::bit_cast<double>(entry));
  }
  return numbers;
}

std::vector<notes_api::TIMEDATE> ReadTimes(const Bytes& value) {
  std::vector<notes_api::TIMEDATE> times;
  for (const std::uint64_t entry : ReadEntries(value, HasType(value, kTypeTimeList))) {
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
