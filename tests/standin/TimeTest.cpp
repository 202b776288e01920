// Date-times: from calendar fields to the library's form and back, and their parts.
#include <array>

#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

TIME Local(int year, int month, int day) {
  TIME time = {};
  time.year = year;
  time.month = month;
  time.day = day;
  return time;
}

// Universal time, as it is in the library's form.
TIME Universal(DWORD hundredths, DWORD day) {
  TIME time = {};
  time.gm = {{hundredths, day}};
  return time;
}

using Fields = std::array<int, 8>;

Fields FieldsOf(const TIME& time) {
  return {time.year, time.month,  time.day,    time.weekday,
          time.hour, time.minute, time.second, time.hundredth};
}

constexpr DWORD kNoTime = 0xFFFFFFFF;
constexpr DWORD kNoDate = 0x00FFFFFF;
constexpr DWORD kLastOfJanuary2024 = 2460341;
constexpr DWORD kHalfPastTwo = ((14 * 60 + 30) * 60 + 5) * 100 + 27;

class LocalTimes : public StandinTest {
 protected:
  LocalTimes() { Start(); }
};

}  // namespace

TEST_F(LocalTimes, BecomeJulianDays) {
  struct Case {
    TIME time;
    DWORD day;
  };
  for (Case& known : std::vector<Case>{{Local(1900, 1, 1), 2415021},
                                       {Local(2000, 2, 29), 2451604},
                                       {Local(1970, 1, 1), 2440588},
                                       {Local(1582, 10, 15), 2299161},
                                       {Local(1, 1, 1), 1721426}}) {
    EXPECT_EQ(TimeLocalToGM(&known.time), 0);
    EXPECT_EQ(known.time.gm.innards[1], known.day);
    EXPECT_EQ(known.time.gm.innards[0], 0U);
  }
}

TEST_F(LocalTimes, CountHundredthsOfTheDay) {
  TIME time = Local(2022, 6, 1);
  time.hour = 23;
  time.minute = 59;
  time.second = 58;
  time.hundredth = 7;
  EXPECT_EQ(TimeLocalToGM(&time), 0);
  EXPECT_EQ(time.gm.innards[0], 8639807U);
}

TEST_F(LocalTimes, MoveWithZoneAndDaylightTime) {
  TIME time = Local(2022, 6, 1);
  time.zone = -1;
  time.dst = 1;
  EXPECT_EQ(TimeLocalToGM(&time), 0);
  EXPECT_EQ(time.gm.innards[0], 22U * 360000U);
  EXPECT_EQ(time.gm.innards[1], 2459731U);
}

TEST_F(LocalTimes, FailWhenThereIsNoSuchDay) {
  for (TIME time : {Local(1900, 2, 29), Local(2022, 13, 1), Local(2022, 0, 1), Local(0, 1, 1)}) {
    EXPECT_NE(TimeLocalToGM(&time), 0);
  }
  TIME late = Local(2022, 1, 1);
  late.hour = 24;
  EXPECT_NE(TimeLocalToGM(&late), 0);
}

TEST_F(LocalTimes, AreCalendarFieldsOfUniversalTime) {
  TIME full = Universal(kHalfPastTwo, kLastOfJanuary2024);
  EXPECT_EQ(TimeGMToLocalZone(&full), 0);
  EXPECT_EQ(FieldsOf(full), (Fields{2024, 1, 31, 4, 14, 30, 5, 27}));
}

TEST_F(LocalTimes, LackTheFieldsOfAPartThatIsAbsent) {
  TIME date = Universal(kNoTime, kLastOfJanuary2024);
  EXPECT_EQ(TimeGMToLocalZone(&date), 0);
  EXPECT_EQ(FieldsOf(date), (Fields{2024, 1, 31, 4, -1, -1, -1, -1}));
  TIME time = Universal(kHalfPastTwo, kNoDate);
  EXPECT_EQ(TimeGMToLocalZone(&time), 0);
  EXPECT_EQ(FieldsOf(time), (Fields{-1, -1, -1, -1, 14, 30, 5, 27}));
}

TEST_F(LocalTimes, IgnoreTheZoneInsideTheUniversalTime) {
  TIME time = Universal(kHalfPastTwo, kLastOfJanuary2024 | 0xC5000000);
  EXPECT_EQ(TimeGMToLocalZone(&time), 0);
  EXPECT_EQ(FieldsOf(time), (Fields{2024, 1, 31, 4, 14, 30, 5, 27}));
}

TEST_F(LocalTimes, UseTheZoneOfTheFields) {
  TIME west = Universal(kHalfPastTwo, kLastOfJanuary2024);
  west.zone = 14;
  west.dst = 1;
  EXPECT_EQ(TimeGMToLocalZone(&west), 0);
  EXPECT_EQ(FieldsOf(west), (Fields{2024, 1, 31, 4, 1, 30, 5, 27}));
  TIME east = Universal(kHalfPastTwo, kLastOfJanuary2024);
  east.zone = -12;
  EXPECT_EQ(TimeGMToLocalZone(&east), 0);
  EXPECT_EQ(FieldsOf(east), (Fields{2024, 2, 1, 5, 2, 30, 5, 27}));
  EXPECT_EQ(TimeLocalToGM(&east), 0);
  EXPECT_EQ(east.gm.innards[0], kHalfPastTwo);
}

TEST_F(LocalTimes, MoveNoDayWithoutATimeAndNoTimeToAnotherDay) {
  TIME date = Universal(kNoTime, kLastOfJanuary2024);
  date.zone = -12;
  EXPECT_EQ(TimeGMToLocalZone(&date), 0);
  EXPECT_EQ(FieldsOf(date), (Fields{2024, 1, 31, 4, -1, -1, -1, -1}));
  TIME time = Universal(kHalfPastTwo, kNoDate);
  time.zone = -12;
  EXPECT_EQ(TimeGMToLocalZone(&time), 0);
  EXPECT_EQ(FieldsOf(time), (Fields{-1, -1, -1, -1, 2, 30, 5, 27}));
}

TEST_F(LocalTimes, FailForWhatIsNoTime) {
  for (TIME time : {Universal(kNoTime, kNoDate), Universal(24 * 360000, kLastOfJanuary2024),
                    Universal(0, 0), Universal(0, kNoDate - 1)}) {
    EXPECT_NE(TimeGMToLocalZone(&time), 0);
    EXPECT_EQ(FieldsOf(time), Fields{});
  }
  TIME farAway = Universal(0, kLastOfJanuary2024);
  farAway.zone = 15;
  EXPECT_NE(TimeGMToLocalZone(&farAway), 0);
}

TEST_F(LocalTimes, FailWhenAFaultStrikes) {
  StandinSetFaults(R"([{"entry": "TimeGMToLocalZone", "status": 1}])");
  TIME time = Universal(0, kLastOfJanuary2024);
  EXPECT_NE(TimeGMToLocalZone(&time), 0);
}

TEST_F(LocalTimes, TellTheirParts) {
  const TIMEDATE full = {{kHalfPastTwo, 0xC5000000 | kLastOfJanuary2024}};
  EXPECT_EQ(TimeExtractJulianDate(&full), kLastOfJanuary2024);
  EXPECT_EQ(TimeExtractTicks(&full), kHalfPastTwo);
  const TIMEDATE none = {{kNoTime, 0xC5000000 | kNoDate}};
  EXPECT_EQ(TimeExtractJulianDate(&none), 0xFFFFFFFF);
  EXPECT_EQ(TimeExtractTicks(&none), 0xFFFFFFFF);
}

TEST_F(LocalTimes, HaveAnEarliestOneThatHasBothParts) {
  TIMEDATE earliest = {{1, 1}};
  TimeConstant(0, &earliest);
  EXPECT_EQ(TimeExtractJulianDate(&earliest), 0U);
  EXPECT_EQ(TimeExtractTicks(&earliest), 0U);
}

}  // namespace larkspan::standin_test
