// Date-times.
#include "tests/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

TIME Local(int year, int month, int day) {
  TIME time = {};
  time.year = year;
  time.month = month;
  time.day = day;
  return time;
}

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

}  // namespace larkspan::standin_test
