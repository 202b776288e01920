// Entry points for date-times.
#include <nlohmann/json.hpp>

#include "notes/NotesApi.h"
#include "standin/Call.h"
#include "standin/Times.h"

namespace larkspan::notes_api {

namespace {

using namespace larkspan::standin;

constexpr std::int64_t kHundredthsPerHour = 60 * 60 * 100;

bool IsTimeOfDay(const TIME& time) {
  return time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60 &&
         time.second >= 0 && time.second < 60 && time.hundredth >= 0 && time.hundredth < 100;
}

std::int64_t LocalHundredths(const TIME& time) {
  return ((std::int64_t{time.hour} * 60 + time.minute) * 60 + time.second) * 100 + time.hundredth;
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
  const bool isZone = time->zone >= -14 && time->zone <= 14;
  if (!IsDate(date) || !IsTimeOfDay(*time) || !isZone) return 1;
  const std::int64_t west = time->zone - (time->dst != 0 ? 1 : 0);
  time->gm = MakeTimeDate(date, LocalHundredths(*time) + west * kHundredthsPerHour);
  return 0;
}

}  // namespace larkspan::notes_api
