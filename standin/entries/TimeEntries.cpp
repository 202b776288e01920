// Entry points for date-times.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Times.h"
#include "standin/entries/Call.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

constexpr std::int64_t kHundredthsPerHour = 60 * 60 * 100;
constexpr WORD kEarliest = 0;
constexpr DWORD kNoPart = 0xFFFFFFFF;
constexpr int kNoField = -1;

bool IsTimeOfDay(const TIME& time) {
  return time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60 &&
         time.second >= 0 && time.second < 60 && time.hundredth >= 0 && time.hundredth < 100;
}

std::int64_t LocalHundredths(const TIME& time) {
  return ((std::int64_t{time.hour} * 60 + time.minute) * 60 + time.second) * 100 + time.hundredth;
}

bool IsZone(const TIME& time) { return time.zone >= -14 && time.zone <= 14; }

// How far the zone is behind Greenwich. Daylight saving time is one hour ahead.
std::int64_t HundredthsWest(const TIME& time) {
  return (time.zone - (time.dst != 0 ? 1 : 0)) * kHundredthsPerHour;
}

DWORD DatePart(const TIMEDATE& time) { return time.innards[1] & kDatePartMask; }

void SetDate(const TIMEDATE& time, TIME* fields) {
  const DWORD day = DatePart(time);
  const bool hasDate = day != kNoDatePart;
  const CivilDate date = hasDate ? DateOfJulianDay(day) : CivilDate{kNoField, kNoField, kNoField};
  fields->year = date.year;
  fields->month = date.month;
  fields->day = date.day;
  fields->weekday = hasDate ? static_cast<int>((day + 1) % 7 + 1) : kNoField;
}

void SetTimeOfDay(const TIMEDATE& time, TIME* fields) {
  const auto hundredths = static_cast<int>(time.innards[0]);
  const bool hasTime = time.innards[0] != kNoTimePart;
  fields->hour = hasTime ? hundredths / static_cast<int>(kHundredthsPerHour) : kNoField;
  fields->minute = hasTime ? hundredths / 6000 % 60 : kNoField;
  fields->second = hasTime ? hundredths / 100 % 60 : kNoField;
  fields->hundredth = hasTime ? hundredths % 100 : kNoField;
}

bool IsTimeDate(const TIMEDATE& time) {
  const bool hasTime = time.innards[0] != kNoTimePart;
  if (hasTime && time.innards[0] >= kHundredthsPerDay) return false;
  if (DatePart(time) == kNoDatePart) return hasTime;
  return IsDate(DateOfJulianDay(DatePart(time)));
}

// A time of no certain day stays one, and a day without a time stays the same day.
TIMEDATE MovedWest(const TIMEDATE& time, std::int64_t hundredths) {
  if (time.innards[0] == kNoTimePart) return time;
  const bool hasDate = DatePart(time) != kNoDatePart;
  const CivilDate date = hasDate ? DateOfJulianDay(DatePart(time)) : CivilDate{1, 1, 1};
  TIMEDATE moved = MakeTimeDate(date, time.innards[0] - hundredths);
  if (!hasDate) moved.innards[1] = kNoDatePart;
  return moved;
}

}  // namespace

// The machine's own zone does not matter: zone counts whole hours west of Greenwich, and daylight
// saving time is one hour ahead. A year before 1 or after 9999 is no date.
BOOL LARKSPAN_NOTES_CALL TimeLocalToGM(TIME* time) {
  const Call call("TimeLocalToGM");
  if (call.stops()) return 1;
  Require(time != nullptr, "the time is missing");
  call.runtime().ledger.RecordLast(
      "TimeLocalToGM", {time->year, time->month, time->day, time->weekday, time->hour, time->minute,
                        time->second, time->hundredth, time->dst, time->zone});
  const CivilDate date = {time->year, time->month, time->day};
  if (!IsDate(date) || !IsTimeOfDay(*time) || !IsZone(*time)) return 1;
  time->gm = MakeTimeDate(date, LocalHundredths(*time) + HundredthsWest(*time));
  return 0;
}

// The other way round. Fields of a part that the time lacks become -1; Sunday is weekday 1.
BOOL LARKSPAN_NOTES_CALL TimeGMToLocalZone(TIME* time) {
  const Call call("TimeGMToLocalZone");
  if (call.stops()) return 1;
  Require(time != nullptr, "the time is missing");
  if (!IsZone(*time) || !IsTimeDate(time->gm)) return 1;
  const TIMEDATE local = MovedWest(time->gm, HundredthsWest(*time));
  SetDate(local, time);
  SetTimeOfDay(local, time);
  return 0;
}

void LARKSPAN_NOTES_CALL TimeConstant(WORD which, TIMEDATE* time) {
  const Call call("TimeConstant");
  if (call.stops()) return;
  Require(time != nullptr, "there is no place for the time");
  Require(which == kEarliest, "unknown constant");
  *time = {};
}

DWORD LARKSPAN_NOTES_CALL TimeExtractJulianDate(const TIMEDATE* time) {
  const Call call("TimeExtractJulianDate");
  if (call.stops()) return 0;
  Require(time != nullptr, "the time is missing");
  const DWORD day = DatePart(*time);
  return day == kNoDatePart ? kNoPart : day;
}

DWORD LARKSPAN_NOTES_CALL TimeExtractTicks(const TIMEDATE* time) {
  const Call call("TimeExtractTicks");
  if (call.stops()) return 0;
  Require(time != nullptr, "the time is missing");
  return time->innards[0];
}

}  // namespace larkspan::notes_api
