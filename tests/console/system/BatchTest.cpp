#include "tests/console/system/BatchTest.h"

#include <filesystem>

#include "console/text/Utf.h"

namespace larkspan::console {

using testing::DocumentsJson;
using testing::FaultsMember;

void BatchTest::List(const std::vector<std::string>& lines) const {
  std::string text;
  for (const std::string& line : lines) text += line + "\r\n";
  WriteBytes(list_, text);
}

Words BatchTest::BatchWords(const Words& more) const {
  const std::wstring configuration = run_.folder() + L"\\notes.ini";
  run_.WriteConfigurationTo(configuration);
  Words words = {L"batch", list_, L"--root", root_, L"--notes-ini", configuration};
  words.insert(words.end(), more.begin(), more.end());
  return words;
}

std::map<std::string, BatchTest::Row> BatchTest::Summary() const {
  const std::string text = ReadBytes(root_ + L"\\summary.csv");
  const auto rows = ParseCsv(std::string_view(text).substr(3));
  std::map<std::string, Row> summary;
  for (std::size_t index = 1; rows && index < rows->size(); ++index) {
    Row& row = summary[rows->at(index).at(1)];
    for (std::size_t column = 0; column < rows->at(0).size(); ++column)
      row[rows->at(0)[column]] = rows->at(index).at(column);
  }
  return summary;
}

std::map<std::string, std::string> BatchTest::States() const {
  std::map<std::string, std::string> states;
  for (const auto& [path, row] : Summary()) states[path] = row.at("state");
  return states;
}

std::wstring BatchTest::FolderOf(const std::string& path) const {
  return root_ + L"\\local\\" + Utf8ToWide(path);
}

ThirtyDatabasesTest::ThirtyDatabasesTest() {
  // Long enough for a test to come in between, and one that ends a hang ends no such.
  const std::string slow = FaultsMember(R"({"entry": "DXLExportNote", "wait": 250})");
  const std::string lost =
      FaultsMember(R"({"entry": "NSFNoteOpen", "note": "00000906", "status": 551})");
  const std::string crash = FaultsMember(
      R"({"entry": "DXLExportNote", "note": "00000902", "action": "accessViolation"})");
  const std::string hang =
      FaultsMember(R"({"entry": "DXLExportNote", "note": "00000906", "action": "hang"})");
  const std::map<std::string, std::string> kinds = {{"damaged", lost},
                                                    {"crashing", crash},
                                                    {"hanging", hang},
                                                    {"locked", R"("access": "fullAccessOnly", )"}};
  std::vector<std::string> lines;
  for (const auto& [path, state] : ExpectedStates()) {
    lines.push_back(path);
    const std::string kind = path.substr(0, path.find('-'));
    const auto found = kinds.find(kind);
    if (kind != "missing")
      run_.AddDatabase(Utf8ToWide(path),
                       DocumentsJson(3, found == kinds.end() ? slow : found->second));
  }
  List(lines);
}

std::map<std::string, std::string> ThirtyDatabasesTest::ExpectedStates() {
  std::map<std::string, std::string> states = {
      {"damaged-1.nsf", "losses"}, {"damaged-2.nsf", "losses"},  {"crashing-1.nsf", "losses"},
      {"hanging-1.nsf", "losses"}, {"locked-1.nsf", "failed"},   {"missing-1.nsf", "failed"},
      {"missing-2.nsf", "failed"}, {"crashing-2.nsf", "losses"},
  };
  for (int number = 10; number < 32; ++number)
    states["clean-" + std::to_string(number) + ".nsf"] = "whole";
  return states;
}

ConsoleEnd ThirtyDatabasesTest::BatchThirty(Words more) const {
  more.insert(more.end(), {L"--stall", kShortStall});
  return Batch(more);
}

std::map<std::string, std::string> ThirtyDatabasesTest::Placed() const {
  std::map<std::string, std::string> placed;
  for (const auto& [path, state] : ExpectedStates())
    if (std::filesystem::exists(FolderOf(path) + L"\\outcome.json"))
      placed[path] = ReadBytes(FolderOf(path) + L"\\outcome.json");
  return placed;
}

void ThirtyDatabasesTest::AwaitPlaced(std::size_t count) const {
  EXPECT_TRUE(AwaitCondition([&] {
    std::size_t placed = 0;
    for (const auto& [path, state] : ExpectedStates())
      if (std::filesystem::exists(FolderOf(path))) ++placed;
    return placed >= count;
  }));
}

std::multiset<std::string> PathsOf(const std::vector<Json>& events, const std::string& kind) {
  std::multiset<std::string> paths;
  for (const Json& event : events)
    if (event.at("kind") == kind) paths.insert(event.at("path"));
  return paths;
}

std::size_t MostAtOnce(const std::vector<Json>& events, const std::string* server) {
  std::size_t now = 0;
  std::size_t most = 0;
  for (const Json& event : events) {
    if (server != nullptr && event.value("server", "") != *server) continue;
    if (event.at("kind") == "exportStart") most = std::max(most, ++now);
    if (event.at("kind") == "exportEnd") --now;
  }
  return most;
}

}  // namespace larkspan::console
