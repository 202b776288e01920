#include "console/show/Table.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

Table Databases() {
  return {{{"Path", false, true}, {"Bytes", true}, {"Title", false, true}},
          {{"mail\\ada.nsf", "512", "Mail of Ada"}, {"種.nsf", "1310720", "種の交換"}}};
}

TEST(TableTest, EachColumnIsAsWideAsItsWidestText) {
  EXPECT_EQ(TableText(Databases(), 0),
            "Path            Bytes  Title\n"
            "mail\\ada.nsf      512  Mail of Ada\n"
            "種.nsf        1310720  種の交換\n");
}

TEST(TableTest, TheWidestColumnGivesWayFirst) {
  EXPECT_EQ(TableText(Databases(), 30),
            "Path         Bytes  Title\n"
            "mai...nsf      512  Mai... Ada\n"
            "種.nsf     1310720  種の交換\n");
}

TEST(TableTest, AColumnIsNotCutToNothing) {
  EXPECT_EQ(TableText(Databases(), 5),
            "Path        Bytes  Title\n"
            "ma...nsf      512  Ma...Ada\n"
            "種.nsf    1310720  種の交換\n");
}

TEST(TableTest, ALineHoldsNothingThatMovesTheCursor) {
  EXPECT_EQ(TableText({{{"Title"}}, {{"a\x1B[2Jb"}}}, 0), "Title\na?[2Jb\n");
}

TEST(TableTest, WithoutRowsTheTitlesStandAlone) {
  EXPECT_EQ(TableText({{{"Server"}}, {}}, 80), "Server\n");
}

}  // namespace
}  // namespace larkspan::console
