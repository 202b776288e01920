// The library's conversions of item values: numbers, date-times, and the entries of text lists.
// Thread: main.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "base/ByteReader.h"
#include "notes/NotesApi.h"

namespace larkspan {

// The machine's conventions for numbers, dates and times.
notes_api::IntlSettings GetIntlSettings();

// A number as text in the library's default format; empty when the library cannot convert it.
std::string NumberToText(double number, const notes_api::IntlSettings& settings);

struct CalendarTime {
  int year = 0;
  int month = 0;
  int day = 0;
  int hour = 0;
  int minute = 0;
  int second = 0;
  int hundredth = 0;
};

// The fields of a date-time in universal time, as the library leaves them: those of a part that
// the date-time does not have are the library's choice.
CalendarTime ToUniversalTime(const notes_api::TIMEDATE& time);

// The Julian day number, and hundredths of a second since midnight; notes_api::kNoTimePart without
// that part.
std::uint32_t JulianDay(const notes_api::TIMEDATE& time);
std::uint32_t TimeOfDay(const notes_api::TIMEDATE& time);

// The date-time before all others.
notes_api::TIMEDATE EarliestTime();

// A text list in a value that begins with its type word and holds at least six bytes.
class TextList {
 public:
  // The value must outlive the list.
  explicit TextList(Bytes value);

  // What the value claims, which may be more than it holds.
  std::uint16_t count() const { return count_; }

  // Gives the text of an entry, in the Notes character set. Returns false, and asks nothing of the
  // library, when the entry or one before it does not lie inside the value. Entries are to be
  // asked for in ascending order from 0.
  bool Next(std::string_view& text);

 private:
  bool NextIsInside();

  Bytes value_;
  std::uint16_t count_;
  std::uint16_t index_ = 0;
  ByteReader lengths_;
  std::size_t end_;
};

}  // namespace larkspan
