#include "console/batch/BatchDisplay.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "console/batch/MakeBatchDisplay.h"
#include "tests/console/show/RecordedSink.h"

namespace larkspan::console {
namespace {

using Json = nlohmann::json;

BatchEntry EntryEndedAs(const std::string& path, ExitCode code, const std::string& reason) {
  BatchEntry entry;
  entry.database = {"Mill", path, "", false};
  entry.folder = L"D:\\export\\Mill\\a";
  entry.state = BatchState::kDone;
  entry.code = code;
  entry.reason = reason;
  entry.out = L"D:\\export\\Mill\\a.attempt-1";
  entry.since = "2026-11-22T07:00:00Z";
  entry.ended = "2026-11-22T07:02:00Z";
  entry.counts = NoteCounts{1'234, 1'200, 0, 0, 34, 0, 0, 0};
  entry.losses = 35;
  return entry;
}

class BatchDisplayTest : public ::testing::Test {
 protected:
  std::unique_ptr<BatchDisplay> Make(DisplayMode mode) {
    return MakeBatchDisplay(mode, output_, errors_);
  }

  std::vector<Json> Events() const {
    std::vector<Json> events;
    std::istringstream lines(output_.text);
    for (std::string line; std::getline(lines, line);) events.push_back(Json::parse(line));
    return events;
  }

  RecordedSink output_;
  RecordedSink errors_;
};

TEST_F(BatchDisplayTest, APersonIsToldWhatBeginsAndWhatWasDoneBefore) {
  BatchCounts counts;
  counts.all = 30;
  counts.before = 1;
  counts.leftOut = 2;
  Make(DisplayMode::kTerminalOrPlain)->Start({"list.csv", "D:\\export", 1, 3}, counts);
  EXPECT_EQ(output_.text,
            "Exporting 30 databases to D:\\export, 3 at once\n"
            "1 database finished before, and passed over\n"
            "1 line names a database again that is listed above\n"
            "2 folders of the list left out\n");
}

TEST_F(BatchDisplayTest, APersonHasALineForEachEnd) {
  const auto display = Make(DisplayMode::kTerminalOrPlain);
  display->Finish(EntryEndedAs("a.nsf", ExitCode::kLosses, "35 losses, each of which is listed"));
  BatchEntry failed = EntryEndedAs("b.nsf", ExitCode::kCouldNotRun, "no such database");
  failed.counts = NoteCounts{};
  display->Finish(failed);
  EXPECT_EQ(output_.text,
            "Done with losses: Mill!!a.nsf, 1,200 of 1,234 notes in 2 min: "
            "35 losses, each of which is listed\n"
            "Could not run: Mill!!b.nsf in 2 min: no such database\n");
}

TEST_F(BatchDisplayTest, ATerminalHasALineOfCountsAndOneForEachExport) {
  output_.isTerminal = true;
  const auto display = Make(DisplayMode::kTerminalOrPlain);
  BatchCounts counts;
  counts.all = 5;
  counts.whole = 1;
  counts.failed = 1;
  counts.running = 2;
  RunningView one;
  one.view.path = "a.nsf";
  RunningView other;
  other.view.path = "b.nsf";
  display->Update(counts, {one, other}, 1'000);
  EXPECT_EQ(output_.text,
            "2 of 5 databases done: 1 whole, 1 failed, 2 at work\n"
            "starting  a.nsf\nstarting  b.nsf");
  display->Update(counts, {one}, 1'100);
  EXPECT_EQ(output_.writes.size(), 1u);
  display->Update(counts, {one}, 1'200);
  EXPECT_EQ(output_.writes.back(),
            "2 of 5 databases done: 1 whole, 1 failed, 2 at work\nstarting  a.nsf");
}

TEST_F(BatchDisplayTest, ManyExportsDoNotFillTheTerminal) {
  output_.isTerminal = true;
  const auto display = Make(DisplayMode::kTerminalOrPlain);
  display->Update({}, std::vector<RunningView>(13), 0);
  EXPECT_EQ(std::count(output_.text.begin(), output_.text.end(), '\n'), 11);
  EXPECT_TRUE(output_.text.ends_with("\nand 3 more"));
}

TEST_F(BatchDisplayTest, AFileHasALineOfCountsEveryTenSeconds) {
  const auto display = Make(DisplayMode::kTerminalOrPlain);
  BatchCounts counts;
  counts.all = 2;
  counts.running = 1;
  for (std::uint64_t now = 0; now <= 20'000; now += 500) display->Update(counts, {}, now);
  EXPECT_EQ(output_.text,
            "0 of 2 databases done: 1 at work\n"
            "0 of 2 databases done: 1 at work\n");
}

TEST_F(BatchDisplayTest, WhatAnExportSaysThatIsNoEventIsShown) {
  const auto display = Make(DisplayMode::kTerminalOrPlain);
  const BatchEntry entry = EntryEndedAs("a.nsf", ExitCode::kUsage, "");
  display->Line(entry, "{}", true);
  display->Line(entry, "larkspan-console: no", false);
  EXPECT_EQ(output_.text, "Mill!!a.nsf: larkspan-console: no\n");
}

TEST_F(BatchDisplayTest, APersonIsToldHowItStops) {
  const auto display = Make(DisplayMode::kTerminalOrPlain);
  display->Stop("user");
  display->Stop("input");
  display->Stop("force");
  EXPECT_EQ(output_.text,
            "Stopping: each export ends at its next note. Ctrl-C again ends them at once.\n"
            "Standard input has ended: stopping.\n"
            "The exports are ended at once.\n");
}

TEST_F(BatchDisplayTest, TheEndTellsWhatWasNotBegunAndWhereTheSummaryIs) {
  BatchEnd end;
  end.code = ExitCode::kIncomplete;
  end.reason = "less than 64 MB are free on the disk";
  end.counts.all = 4;
  end.counts.whole = 1;
  end.counts.incomplete = 1;
  end.counts.notBegun = 2;
  end.summary = "D:\\export\\summary.html";
  end.seconds = 65;
  Make(DisplayMode::kTerminalOrPlain)->End(end);
  EXPECT_EQ(output_.text,
            "Not all is accounted for: 2 of 4 databases done: 1 whole, 1 incomplete in 1 min\n"
            "2 databases not begun: less than 64 MB are free on the disk\n"
            "Summary: D:\\export\\summary.html\n");
}

TEST_F(BatchDisplayTest, AProgramHasEventsAndTheEventsOfTheExports) {
  const auto display = Make(DisplayMode::kJson);
  const BatchEntry entry = EntryEndedAs("a.nsf", ExitCode::kLosses, "35 losses");
  display->Start({"list.csv", "D:\\export", 0, 3}, {});
  display->Begin(entry);
  display->Line(entry, R"({"kind":"phase","phase":"views"})", true);
  display->Line(entry, "larkspan-console: no", false);
  display->Finish(entry);
  display->Stop("user");
  display->End({});
  const std::vector<Json> events = Events();
  ASSERT_EQ(events.size(), 7u);
  std::vector<std::string> kinds;
  for (const Json& event : events) kinds.push_back(event.at("kind"));
  EXPECT_EQ(kinds, (std::vector<std::string>{"batchStart", "exportStart", "exportEvent",
                                             "exportText", "exportEnd", "stop", "batchEnd"}));
  EXPECT_EQ(events[0].at("jobs"), 3);
  EXPECT_EQ(events[1].at("out"), "D:\\export\\Mill\\a");
  EXPECT_EQ(events[2].at("event").at("phase"), "views");
  EXPECT_EQ(events[3].at("text"), "larkspan-console: no");
  EXPECT_EQ(events[4].at("server"), "Mill");
  EXPECT_EQ(events[4].at("out"), "D:\\export\\Mill\\a.attempt-1");
  EXPECT_EQ(events[4].at("state"), "losses");
  EXPECT_EQ(events[4].at("losses"), 35);
  for (std::size_t index = 0; index < events.size(); ++index)
    EXPECT_EQ(events[index].at("sequence"), index + 1);
}

TEST_F(BatchDisplayTest, QuietTellsOnlyWhatWentWrong) {
  const auto display = Make(DisplayMode::kQuiet);
  display->Start({}, {});
  display->Finish(EntryEndedAs("a.nsf", ExitCode::kWhole, ""));
  display->Finish(EntryEndedAs("b.nsf", ExitCode::kCouldNotRun, "no such database"));
  display->Error("no room");
  display->End({});
  EXPECT_EQ(output_.text, "");
  EXPECT_EQ(errors_.text,
            "larkspan-console: Could not run: Mill!!b.nsf, 1,200 of 1,234 notes in 2 min: "
            "no such database\n"
            "larkspan-console: no room\n");
}

TEST_F(BatchDisplayTest, ABrokenOutputIsSeen) {
  output_.isBroken = true;
  for (const DisplayMode mode : {DisplayMode::kTerminalOrPlain, DisplayMode::kJson}) {
    const auto display = Make(mode);
    EXPECT_FALSE(display->OutputBroken());
    display->Stop("user");
    EXPECT_TRUE(display->OutputBroken());
  }
}

}  // namespace
}  // namespace larkspan::console
