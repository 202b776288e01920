#include "console/batch/EventReader.h"

#include <gtest/gtest.h>

#include "console/show/EventLines.h"

namespace larkspan::console {
namespace {

class EventReaderTest : public ::testing::Test {
 protected:
  EventLines lines_;
  EventReader reader_{"Mill", "a.nsf"};
};

TEST_F(EventReaderTest, TakesTheProgressAsItWasGiven) {
  RunView view;
  view.phase = "documents";
  view.views = 3;
  view.viewsDone = 3;
  view.documents = 100;
  view.documentsDone = 42;
  view.note = 0x90A;
  view.restarts = 2;
  view.lost = 5;
  EXPECT_TRUE(reader_.Take(lines_.Progress(view, {1.5, 39})));
  EXPECT_EQ(reader_.view().server, "Mill");
  EXPECT_EQ(reader_.view().path, "a.nsf");
  EXPECT_EQ(reader_.view().phase, "documents");
  EXPECT_EQ(reader_.view().views, 3u);
  EXPECT_EQ(reader_.view().viewsDone, 3u);
  EXPECT_EQ(reader_.view().documents, 100u);
  EXPECT_EQ(reader_.view().documentsDone, 42u);
  EXPECT_EQ(reader_.view().note, 0x90Au);
  EXPECT_EQ(reader_.view().restarts, 2u);
  EXPECT_EQ(reader_.view().lost, 5u);
  EXPECT_EQ(reader_.pace().perSecond, 1.5);
  EXPECT_EQ(reader_.pace().secondsLeft, 39u);
}

TEST_F(EventReaderTest, WhatIsNotKnownStaysUnknown) {
  EXPECT_TRUE(reader_.Take(lines_.Progress({}, {})));
  EXPECT_EQ(reader_.view().documents, std::nullopt);
  EXPECT_EQ(reader_.view().note, std::nullopt);
  EXPECT_EQ(reader_.pace().perSecond, std::nullopt);
}

TEST_F(EventReaderTest, PhasesStopsAndRetriesShow) {
  EXPECT_TRUE(reader_.Take(lines_.Phase("scanning")));
  EXPECT_EQ(reader_.view().phase, "scanning");
  EXPECT_TRUE(reader_.Take(lines_.Stop("input")));
  EXPECT_TRUE(reader_.view().stopRequested);
  EXPECT_TRUE(reader_.Take(lines_.Retry({"without views", "a crash"})));
  EXPECT_TRUE(reader_.view().withoutViews);
}

TEST_F(EventReaderTest, TheStartAndTheEndTellWhereTheExportLies) {
  EXPECT_TRUE(reader_.Take(lines_.Start({"Mill", "a.nsf", "D:\\a.attempt-1", "archive", {}})));
  EXPECT_EQ(reader_.out(), "D:\\a.attempt-1");
  EndEvent end;
  end.reason = "2 losses, each of which is listed";
  end.out = "D:\\a";
  EXPECT_TRUE(reader_.Take(lines_.End(end)));
  EXPECT_EQ(reader_.out(), "D:\\a");
  EXPECT_EQ(reader_.reason(), end.reason);
}

TEST_F(EventReaderTest, WhatIsNoEventIsAMessage) {
  for (const char* line : {"larkspan-console: no", "", "[1]", "7", "{\"kind\": 7}", "{\"kind\"",
                           "{\"kind\":\"progress\"}"})
    EXPECT_FALSE(reader_.Take(line)) << line;
  EXPECT_EQ(reader_.lastMessage(), "{\"kind\":\"progress\"}");
}

TEST_F(EventReaderTest, AKindThatNobodyKnowsIsPassedOver) {
  EXPECT_TRUE(reader_.Take("{\"kind\":\"later\"}"));
  EXPECT_EQ(reader_.view().phase, "starting");
}

}  // namespace
}  // namespace larkspan::console
