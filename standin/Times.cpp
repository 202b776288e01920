#include "standin/Times.h"

#include <cstdio>
#include <regex>
#include <stdexcept>

namespace larkspan::standin {

namespace {

constexpr std::int64_t kUnixEpochJulianDay = 2440588;
constexpr std::int64_t kDaysPerEra = 146097;  // 400 years
constexpr std::int64_t kDaysFromMarch0000ToEpoch = 719468;

std::int64_t FloorDivide(std::int64_t number, std::int64_t divisor) {
  return number >= 0 ? number / divisor : -((-number + divisor - 1) / divisor);
}

int DaysInMonth(int year, int month) {
  constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  return month == 2 && leap ? 29 : kDays[month - 1];
}

int Number(const std::ssub_match& digits) { return digits.matched ? std::stoi(digits.str()) : 0; }

std::int64_t ParsedHundredths(const std::smatch& match) {
  std::int64_t hundredths = Number(match[5]);
  hundredths = hundredths * 60 + Number(match[6]);
  hundredths = hundredths * 60 + Number(match[7]);
  return hundredths * 100 + Number(match[8]);
}

std::string DateText(notes_api::DWORD julianDay) {
  const CivilDate date = DateOfJulianDay(julianDay);
  char text[40];
  std::snprintf(text, sizeof text, "%04d%02d%02d", date.year, date.month, date.day);
  return text;
}

std::string TimeText(notes_api::DWORD hundredths) {
  const unsigned seconds = static_cast<unsigned>(hundredths / 100);
  char text[40];
  std::snprintf(text, sizeof text, "T%02u%02u%02u,%02u", seconds / 3600, seconds / 60 % 60,
                seconds % 60, static_cast<unsigned>(hundredths % 100));
  return text;
}

}  // namespace

// Counts from March so that the leap day ends the year.
std::int64_t JulianDay(const CivilDate& date) {
  const std::int64_t year = date.year - (date.month <= 2 ? 1 : 0);
  const std::int64_t era = FloorDivide(year, 400);
  const std::int64_t yearOfEra = year - era * 400;
  const std::int64_t month = date.month > 2 ? date.month - 3 : date.month + 9;
  const std::int64_t dayOfYear = (153 * month + 2) / 5 + date.day - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * kDaysPerEra + dayOfEra - kDaysFromMarch0000ToEpoch + kUnixEpochJulianDay;
}

CivilDate DateOfJulianDay(std::int64_t julianDay) {
  const std::int64_t days = julianDay - kUnixEpochJulianDay + kDaysFromMarch0000ToEpoch;
  const std::int64_t era = FloorDivide(days, kDaysPerEra);
  const std::int64_t dayOfEra = days - era * kDaysPerEra;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t month = (5 * dayOfYear + 2) / 153;
  CivilDate date;
  date.day = static_cast<int>(dayOfYear - (153 * month + 2) / 5 + 1);
  date.month = static_cast<int>(month < 10 ? month + 3 : month - 9);
  date.year = static_cast<int>(yearOfEra + era * 400 + (date.month <= 2 ? 1 : 0));
  return date;
}

bool IsDate(const CivilDate& date) {
  return date.year >= 1 && date.year <= 9999 && date.month >= 1 && date.month <= 12 &&
         date.day >= 1 && date.day <= DaysInMonth(date.year, date.month);
}

notes_api::TIMEDATE MakeTimeDate(const CivilDate& date, std::int64_t hundredths) {
  const std::int64_t days = FloorDivide(hundredths, kHundredthsPerDay);
  notes_api::TIMEDATE time = {};
  time.innards[0] = static_cast<notes_api::DWORD>(hundredths - days * kHundredthsPerDay);
  time.innards[1] = static_cast<notes_api::DWORD>(JulianDay(date) + days) & kDatePartMask;
  return time;
}

notes_api::TIMEDATE ParseTimeDate(const std::string& text) {
  static const std::regex pattern(
      R"((?:(\d{4})-(\d\d)-(\d\d))?(T(\d\d):(\d\d):(\d\d)(?:\.(\d\d))?Z)?)");
  std::smatch match;
  if (text.empty() || !std::regex_match(text, match, pattern)) {
    throw std::runtime_error("\"" + text + "\" is not a date-time");
  }
  const bool hasDate = match[1].matched;
  const CivilDate date = {Number(match[1]), Number(match[2]), Number(match[3])};
  if (hasDate && !IsDate(date)) throw std::runtime_error("\"" + text + "\" is no date");
  notes_api::TIMEDATE time =
      MakeTimeDate(hasDate ? date : CivilDate{1, 1, 1}, ParsedHundredths(match));
  if (!hasDate) time.innards[1] = kNoDatePart;
  if (!match[4].matched) time.innards[0] = kNoTimePart;
  return time;
}

std::int64_t Instant(const notes_api::TIMEDATE& time) {
  const std::int64_t day = time.innards[1] & kDatePartMask;
  const std::int64_t hundredths = time.innards[0] == kNoTimePart ? 0 : time.innards[0];
  return (day == kNoDatePart ? 0 : day) * kHundredthsPerDay + hundredths;
}

std::string DxlTimeText(const notes_api::TIMEDATE& time) {
  const notes_api::DWORD day = time.innards[1] & kDatePartMask;
  if (day == kNoDatePart) return TimeText(time.innards[0]);
  if (time.innards[0] == kNoTimePart) return DateText(day);
  return DateText(day) + TimeText(time.innards[0]) + "+00";
}

}  // namespace larkspan::standin
