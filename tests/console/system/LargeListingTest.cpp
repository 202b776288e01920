// Ten thousand databases and folders with everything that titles and times can hold, each line held
// against what the directory was made of and against the exporter's own file.
#include <array>
#include <cstdio>
#include <map>
#include <sstream>

#include "console/text/Csv.h"
#include "tests/console/system/ListingTest.h"

namespace larkspan::console {
namespace {

constexpr int kEntries = 10'000;

// What is asked for, and what has to come out.
struct Made {
  std::string title;
  std::string expectedTitle;
  std::string dataModified;
  std::string designModified;
  double bytes = 0;
  std::string expectedBytes;
  bool isFolder = false;
};

const std::array<std::pair<const char*, const char*>, 8> kTitles = {{
    {"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE8\xA1\xA8\xE9\xA1\x8C",
     "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE8\xA1\xA8\xE9\xA1\x8C"},
    {"Orders, \"old\"", "Orders, \"old\""},
    {"two\r\nlines", "two  lines"},
    {"tab\there\x01\x1F\x07", "tab here"},
    {"  leading", "  leading"},
    {"   ", ""},
    {"Gr\xC3\xBC\xC3\x9F"
     "e \xE2\x82\xAC \x1B[31m",
     "Gr\xC3\xBC\xC3\x9F"
     "e \xE2\x82\xAC  [31m"},
    {"=1+1", "=1+1"},
}};

std::string Formatted(const char* format, int a, int b, int c, int d) {
  std::array<char, 80> text;
  std::snprintf(text.data(), text.size(), format, a, b, c, d);
  return text.data();
}

class LargeListingTest : public ListingTest {
 protected:
  LargeListingTest() {
    Json entries = Json::array();
    for (int i = 0; i < kEntries; ++i) entries.push_back(MakeEntry(i));
    const std::wstring folder = run_.folder() + L"\\data";
    std::filesystem::create_directories(folder + L"\\servers\\Big");
    WriteBytes(folder + L"\\servers\\Big\\directory.json", Json{{"entries", entries}}.dump());
    run_.SetDataFolder(folder);
  }

  Json MakeEntry(int i) {
    const bool isFolder = i % 10 == 3;
    const std::string path =
        Formatted(isFolder ? "lots\\\xE6\x97\xA5 %05d" : "lots\\\xE6\x97\xA5 %05d.nsf", i, 0, 0, 0);
    Made& made = made_[path];
    made.isFolder = isFolder;
    if (isFolder) {
      made.expectedBytes = "0";
      return {{"folder", true}, {"items", {{"$Path", {{"text", path}}}}}};
    }
    std::tie(made.title, made.expectedTitle) =
        kTitles[static_cast<std::size_t>(i) % kTitles.size()];
    const std::string day =
        Formatted("%04d-%02d-%02dT%02d", 1990 + i % 60, 1 + i % 12, 1 + i % 28, i % 24);
    made.dataModified = day + Formatted(":%02d:%02d.%02dZ", i % 60, i / 60 % 60, i % 100, 0);
    made.designModified = day + ":59:59.99Z";
    made.bytes = i * 1024.0 + (i % 7 == 0 ? 0.5 : 0);
    made.expectedBytes = std::to_string(i * 1024) + (i % 7 == 0 ? ".5" : "");
    return {{"items",
             {{"$Path", {{"text", path}}},
              {"$Info", {{"text", made.title + std::string(1, '\0')}}},
              {"$DATAMOD", {{"dateTime", made.dataModified}}},
              {"$NONDATAMOD", {{"dateTime", made.designModified}}},
              {"$Length", {{"number", made.bytes}}}}}};
  }

  // The lines of the exporter's own file behind the first.
  Lines ScanLines() {
    run_.RunArguments(
        {run_.ConfigurationArgument(), L"-o", run_.output(), L"-s", L"Big", L"-scan"});
    Lines lines = SplitLines(run_.OutputFile(L"scan.txt"));
    lines.erase(lines.begin());
    return lines;
  }

  std::map<std::string, Made> made_;
};

TEST_F(LargeListingTest, EachLineIsThereWithItsValues) {
  const ConsoleEnd end = Databases({L"--server", L"Big", L"--csv", L"--to", to_});
  ASSERT_EQ(end.code, 0u) << end.errors;
  const auto rows = ParseCsv(ReadBytes(to_));
  ASSERT_TRUE(rows);
  const Lines scan = ScanLines();
  ASSERT_EQ(rows->size(), scan.size() + 1);
  ASSERT_EQ(scan.size(), std::size_t{kEntries});
  for (std::size_t i = 0; i < scan.size(); ++i) {
    const CsvRow& row = rows->at(i + 1);
    ASSERT_EQ(row.size(), 8u);
    ASSERT_TRUE(scan[i].starts_with(row[1] + "\t" + row[2] + "\t")) << scan[i];
    ASSERT_TRUE(scan[i].ends_with("\t" + row[6])) << scan[i];
    const Made& made = made_.at(row[1]);
    const CsvRow expected = {"Big",
                             row[1],
                             made.expectedTitle,
                             made.dataModified,
                             made.designModified,
                             made.expectedBytes,
                             row[6],
                             made.isFolder ? "folder" : "database"};
    ASSERT_EQ(row, expected) << scan[i];
  }
}

TEST_F(LargeListingTest, TheFormatsAgree) {
  const ConsoleEnd json = Databases({L"--server", L"Big", L"--json"});
  const ConsoleEnd table = Databases({L"--server", L"Big"});
  ASSERT_EQ(json.code, 0u) << json.errors;
  ASSERT_EQ(table.code, 0u) << table.errors;
  EXPECT_TRUE(table.output.ends_with("\n9,000 databases and 1,000 folders\n"));
  std::istringstream lines(table.output);
  std::string line;
  std::getline(lines, line);
  const Json document = Json::parse(json.output);
  ASSERT_EQ(document.at("databases").size(), std::size_t{kEntries});
  for (const Json& entry : document.at("databases")) {
    std::getline(lines, line);
    const Made& made = made_.at(entry.at("path").get<std::string>());
    ASSERT_TRUE(line.starts_with(entry.at("path").get<std::string>() + "  ")) << line;
    ASSERT_EQ(entry.at("bytes").get<double>(), made.bytes);
    ASSERT_EQ(entry.at("title").is_null(), made.expectedTitle.empty());
    if (made.isFolder) continue;
    ASSERT_TRUE(Holds(line, "  " + made.expectedTitle)) << line;
    ASSERT_TRUE(Holds(line, "  " + made.dataModified + "  " + made.designModified)) << line;
  }
}

}  // namespace
}  // namespace larkspan::console
