// Date-times of the Notes library: building them from dates, reading and writing them as text. All
// are in universal time. Stateless; any thread may call.
#pragma once

#include <cstdint>
#include <string>

#include "notes/NotesApi.h"

namespace larkspan::standin {

using notes_api::kNoTimePart;

inline constexpr notes_api::DWORD kNoDatePart = 0x00FFFFFF;
inline constexpr notes_api::DWORD kDatePartMask = 0x00FFFFFF;
inline constexpr notes_api::DWORD kHundredthsPerDay = 24 * 60 * 60 * 100;

struct CivilDate {
  int year = 0;
  int month = 0;
  int day = 0;
};

// Proleptic Gregorian calendar.
std::int64_t JulianDay(const CivilDate& date);
CivilDate DateOfJulianDay(std::int64_t julianDay);
bool IsDate(const CivilDate& date);

// Hundredths may lie outside the day, which then moves the date.
notes_api::TIMEDATE MakeTimeDate(const CivilDate& date, std::int64_t hundredths);

// Reads "2019-04-03", "2019-04-03T10:20:30Z", the same with ".25" hundredths, or "T10:20:30Z".
// Throws std::runtime_error for anything else.
notes_api::TIMEDATE ParseTimeDate(const std::string& text);

// A point on one line, for comparing; an absent part counts as zero.
std::int64_t Instant(const notes_api::TIMEDATE& time);

// "20190403T102030,25+00", "20190403" or "T102030,25".
std::string DxlTimeText(const notes_api::TIMEDATE& time);

}  // namespace larkspan::standin
