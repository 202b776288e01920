#include "console/show/EventLines.h"

#include <gtest/gtest.h>

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace larkspan::console {
namespace {

std::string TimeOfTheExample() { return "2026-11-22T07:40:55Z"; }

// The blocks of the page's examples, each with its lines and their ends.
std::vector<std::string> ExamplesOfThePage() {
  std::ifstream page(LARKSPAN_DOCS_FOLDER "/events.md", std::ios::binary);
  std::vector<std::string> blocks;
  bool isExample = false;
  for (std::string line; std::getline(page, line);) {
    if (isExample && line != "```") blocks.back() += line + "\n";
    if (line == "```json") blocks.emplace_back();
    isExample = line == "```json" || (isExample && line != "```");
  }
  return blocks;
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
  written += lines.Lost({{LossKind::kNote, 0x90A, "open", "Note has been deleted"}});
  written +=
      lines.Warn({"space", "there are 1288490188 bytes free, and the database has 3650722201"});
  written += lines.Stop("user");
  written += lines.Retry({"without views", "a crash among the views"});
  written += lines.Ready({ExitCode::kLosses, CountsOfTheExample(), 4, 0, 1});
  written += lines.End({ExitCode::kLosses, "4 losses, each of which is listed",
                        "D:\\export\\orders", CountsOfTheExample(), 145});
  EXPECT_EQ(written, ExamplesOfThePage().at(0));
}

TEST(EventLinesTest, TheExamplesOfSeveralWorkersAreWhatIsWritten) {
  std::string second = "27";
  EventLines lines([&] { return "2026-11-23T03:22:" + second + "Z"; });
  for (int event = 1; event < 15; ++event) lines.Phase("documents");
  RunView view;
  view.phase = "documents";
  view.views = 0;
  view.documents = 240;
  view.documentsDone = 225;
  view.note = 0x1368;
  view.workers = {{1, 0x1368}, {2, 0x13A4}, {3, 0x1380}};
  std::string written = lines.Progress(view, {27.7, 1});
  written += lines.Restart({0x13A4, "crash", 2});
  written += lines.Lost({{LossKind::kNote, 0x13A4, "crash", "a worker died at it"}, 2});
  written += lines.Phase("joining");
  second = "28";
  view.phase = "joining";
  view.documentsDone = 240;
  view.parts = 3;
  view.partsDone = 2;
  view.note.reset();
  view.workers.clear();
  view.restarts = 1;
  view.lost = 1;
  written += lines.Progress(view, {});
  EXPECT_EQ(written, ExamplesOfThePage().at(1));
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
      ParsedEvent(lines.Lost({{LossKind::kAcl, std::nullopt, "acl", ""}})).at("id").is_null());
  EXPECT_TRUE(ParsedEvent(lines.End({})).at("counts").is_null());
}

TEST(EventLinesTest, SeveralWorkersHaveTheirNumbers) {
  EventLines lines(TimeOfTheExample);
  RunView view;
  EXPECT_FALSE(ParsedEvent(lines.Progress(view, {})).contains("workers"));
  view.workers = {{1, 0x90A}, {2, std::nullopt}};
  EXPECT_EQ(ParsedEvent(lines.Progress(view, {})).at("workers"),
            nlohmann::json::parse(R"([{"worker": 1, "note": "0000090A"},
                                      {"worker": 2, "note": null}])"));
  EXPECT_FALSE(ParsedEvent(lines.Restart({0x90A, "crash"})).contains("worker"));
  EXPECT_EQ(ParsedEvent(lines.Restart({0x90A, "crash", 2})).at("worker"), 2);
  const Loss loss{LossKind::kNote, 0x90A, "crash", ""};
  EXPECT_FALSE(ParsedEvent(lines.Lost({loss})).contains("worker"));
  EXPECT_EQ(ParsedEvent(lines.Lost({loss, 2})).at("worker"), 2);
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
