#include "console/batch/Schedule.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

// One entry for each server, with the state of the letter before it: "r" runs, "w" waits, "d" is
// done.
std::vector<BatchEntry> Entries(const std::vector<std::string>& texts) {
  std::vector<BatchEntry> entries;
  for (const std::string& text : texts) {
    BatchEntry entry;
    entry.state = text[0] == 'r'   ? BatchState::kRunning
                  : text[0] == 'w' ? BatchState::kWaiting
                                   : BatchState::kDone;
    entry.database.server = text.substr(1);
    entries.push_back(entry);
  }
  return entries;
}

TEST(ScheduleTest, TheFirstThatWaitsIsNext) {
  EXPECT_EQ(NextToBegin(Entries({"dMill", "rMill", "wMill", "wMill"}), {2, {}}), 2u);
}

TEST(ScheduleTest, NothingBeginsWhileAllPlacesAreTaken) {
  EXPECT_EQ(NextToBegin(Entries({"rMill", "rQuay", "wMill"}), {2, {}}), std::nullopt);
}

TEST(ScheduleTest, NothingIsLeftAtTheEnd) {
  EXPECT_EQ(NextToBegin(Entries({"dMill", "rQuay"}), {2, {}}), std::nullopt);
  EXPECT_EQ(NextToBegin({}, {1, {}}), std::nullopt);
}

TEST(ScheduleTest, AServerThatHasItsShareIsPassedOver) {
  EXPECT_EQ(NextToBegin(Entries({"rMill", "wmill", "wQuay"}), {3, 1}), 2u);
  EXPECT_EQ(NextToBegin(Entries({"rMill", "wmill", "wQuay"}), {3, 2}), 1u);
  EXPECT_EQ(NextToBegin(Entries({"rMill", "wmill", "dQuay"}), {3, 1}), std::nullopt);
}

TEST(ScheduleTest, ThisMachineIsAServerOfItsOwn) {
  EXPECT_EQ(NextToBegin(Entries({"r", "w", "wMill"}), {3, 1}), 2u);
}

}  // namespace
}  // namespace larkspan::console
