// The bytes of item values: building them from what a database file says, and reading them back.
// Layouts, after the type word, all numbers with the low byte first:
//
//   text, formula   the bytes of the text
//   text list       entry count (16 bits), length of each (16 bits), the texts one after another
//   number, time    8 bytes
//   their lists     entry count and pair count (16 bits each), the entries of 8 bytes, the pairs of
//                   16 bytes
//   rich text       records: type (16 bits), zero (16 bits), length with this head (32 bits), data
//
// Readers take values that builders made. Stateless; any thread may call.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "notes/NotesApi.h"
#include "standin/Bytes.h"

namespace larkspan::standin {

inline constexpr std::size_t kTypeWordSize = 2;
inline constexpr std::size_t kRecordHeadSize = 8;

struct RichTextRecord {
  notes_api::WORD type = 0;
  Bytes data;
};

// Where a record stands in a value.
struct RecordSpan {
  notes_api::WORD type = 0;
  std::size_t offset = 0;  // of the record's head
  std::size_t length = 0;  // with the head
};

// Both ends of a range.
using NumberRange = std::pair<double, double>;
using TimeRange = std::pair<notes_api::TIMEDATE, notes_api::TIMEDATE>;

Bytes MakeTextValue(notes_api::WORD type, std::string_view text);
Bytes MakeTextListValue(const std::vector<std::string>& texts);
Bytes MakeNumberValue(double number);
Bytes MakeNumberListValue(const std::vector<double>& numbers,
                          const std::vector<NumberRange>& pairs = {});
Bytes MakeTimeValue(const notes_api::TIMEDATE& time);
Bytes MakeTimeListValue(const std::vector<notes_api::TIMEDATE>& times,
                        const std::vector<TimeRange>& pairs = {});
Bytes MakeRichTextValue(const std::vector<RichTextRecord>& records);
Bytes MakeRawValue(notes_api::WORD type, const Bytes& data);

std::string ReadText(const Bytes& value);
std::vector<std::string> ReadTextList(const Bytes& value);
std::vector<double> ReadNumbers(const Bytes& value);
std::vector<notes_api::TIMEDATE> ReadTimes(const Bytes& value);
std::vector<RecordSpan> ReadRecords(const Bytes& value);

// A value of the same length and type word that nobody can read.
Bytes Scrambled(const Bytes& value);

}  // namespace larkspan::standin
