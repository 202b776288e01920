#include "console/show/EventLines.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>

namespace larkspan::console {
namespace {

std::string TimeOfTheExample() { return "2026-11-22T07:40:55Z"; }

// The lines of the page's examples, with their ends.
std::string ExamplesOfThePage() {
  std::ifstream page(LARKSPAN_DOCS_FOLDER "/events.md", std::ios::binary);
  std::string examples;
  bool isExample = false;
  for (std::string line; std::getline(page, line);) {
    if (isExample && line != "```") examples += line + "\n";
    isExample = line == "```json" || (isExample && line != "```");
  }
  return examples;
}

RunView ViewOfTheExample() {
  RunView view;
  view.phase = "documents";
  view.views = 12;
  view.viewsDone = 12;
  view.documents = 4'567;
  view.documentsDone = 123;
  view.note = 0x90A;
  view.restarts = 1;
  view.lost = 3;
  return view;
}

NoteCounts CountsOfTheExample() {
  NoteCounts counts;
  counts.listed = 4'567;
  counts.exported = 4'564;
  counts.exportedWithLoss = 1;
  counts.lost = 3;
  return counts;
}

TEST(EventLinesTest, TheExamplesOfThePageAreWhatIsWritten) {
  EventLines lines(TimeOfTheExample);
  std::string written =
      lines.Start({"Mill/Example",
                   "archive\\orders.nsf",
                   "D:\\export\\orders",
                   "archive",
                   {"export", "--server", "Mill/Example", "--path", "archive\\orders.nsf", "--out",
                    "D:\\export\\orders", "--json"}});
  written += lines.Phase("documents");
  written += lines.Progress(ViewOfTheExample(), {31.249, 143});
  written += lines.Restart({0x90A, "crash"});
  written += lines.Lost({LossKind::kNote, 0x90A, "open", "Note has been deleted"});
  written += lines.Warn({"disk", "Less is free than the database takes: 1.2 GB of 3.4 GB."});
  written += lines.Stop("user");
  written += lines.Retry({"without views", "The library died in view 0000013E."});
  written += lines.Ready({ExitCode::kLosses, CountsOfTheExample(), 4, 0, 1});
  written += lines.End({ExitCode::kLosses, "3 of 4,567 notes are lost.", "D:\\export\\orders",
                        CountsOfTheExample(), 145});
  EXPECT_EQ(written, ExamplesOfThePage());
}

nlohmann::json ParsedEvent(const std::string& line) { return nlohmann::json::parse(line); }

TEST(EventLinesTest, WhatIsNotKnownIsNull) {
  EventLines lines(TimeOfTheExample);
  const nlohmann::json event = ParsedEvent(lines.Progress({}, {}));
  for (const char* field :
       {"views", "documents", "files", "percent", "rate", "secondsLeft", "note"})
    EXPECT_TRUE(event.at(field).is_null()) << field;
  EXPECT_TRUE(ParsedEvent(lines.Restart({std::nullopt, "crash"})).at("note").is_null());
  EXPECT_TRUE(
      ParsedEvent(lines.Lost({LossKind::kAcl, std::nullopt, "acl", ""})).at("id").is_null());
  EXPECT_TRUE(ParsedEvent(lines.End({})).at("counts").is_null());
}

TEST(EventLinesTest, AnyTextIsOneLineOfJson) {
  EventLines lines(TimeOfTheExample);
  const std::string name = "\"\\\r\n\t\x01 \xC3\xA4 \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x8C\xB1";
  const std::string line = lines.Stop(name);
  EXPECT_EQ(line.find('\n'), line.size() - 1);
  EXPECT_EQ(ParsedEvent(line).at("by"), name);
}

TEST(EventLinesTest, WhatIsNoUtf8IsReplaced) {
  EventLines lines(TimeOfTheExample);
  EXPECT_EQ(ParsedEvent(lines.Stop("a\xFF\xC3")).at("by"), "a\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(EventLinesTest, TheTimeIsThatOfTheEvent) {
  int asked = 0;
  EventLines lines([&asked] { return std::to_string(++asked); });
  EXPECT_EQ(ParsedEvent(lines.Phase("views")).at("time"), "1");
  EXPECT_EQ(ParsedEvent(lines.Phase("documents")).at("time"), "2");
}

}  // namespace
}  // namespace larkspan::console
