#include "app/SupervisorRole.h"

#include <gtest/gtest.h>

namespace larkspan {
namespace {

TEST(MakesWorkersTest, CommandLineThatALaterWorkerUnderstandsDoes) {
  EXPECT_TRUE(MakesWorkers(L"larkspan.exe -p a.nsf -o out"));
  EXPECT_TRUE(MakesWorkers(L"larkspan.exe -p a.nsf -o out -l 7"));
}

TEST(MakesWorkersTest, CommandLineThatKeepsTheNoteIdToItselfDoesNot) {
  EXPECT_FALSE(MakesWorkers(L"larkspan.exe -o out -p \"a.nsf"));
}

TEST(MakesWorkersTest, CommandLineThatAWorkerRefusesDoesNot) {
  EXPECT_FALSE(MakesWorkers(L"larkspan.exe -p a.nsf -o"));
  EXPECT_FALSE(MakesWorkers(L"larkspan.exe -l 0 -unknown"));
}

}  // namespace
}  // namespace larkspan
