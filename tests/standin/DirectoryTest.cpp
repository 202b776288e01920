// Opening, asking and searching data directories.
#include <algorithm>
#include <set>

#include "standin/StandinHooks.h"
#include "tests/standin/DirectorySearching.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr STATUS kMissingFolder = 259;

class Directories : public StandinTest {
 protected:
  // A directory of as many databases, and the server it is of.
  void WriteDirectory(const std::string& server, int databases) const {
    WriteFile("servers/" + server + "/directory.json",
              R"({"generate": )" + std::to_string(databases) + "}");
  }

  static std::string CanonicalPath(const std::string& path) {
    DHANDLE directory = 0;
    EXPECT_EQ(OpenDirectory(path, &directory), 0) << path;
    char canonical[1024] = {}, expanded[1024] = {};
    EXPECT_EQ(NSFDbPathGet(directory, canonical, expanded), 0);
    EXPECT_EQ(NSFDbClose(directory), 0);
    return ToUtf8(canonical);
  }

  static DHANDLE Open(const std::string& path) {
    DHANDLE directory = 0;
    EXPECT_EQ(OpenDirectory(path, &directory), 0) << path;
    return directory;
  }
};

}  // namespace

TEST_F(Directories, OpenByAPathWithoutAFile) {
  Start();
  WriteDirectory("Garden", 3);
  WriteDirectory("Glashäuser", 2);
  WriteDirectory("CN=Mill/O=Example", 1);
  WriteFile("directory.json", R"({"generate": 4})");
  EXPECT_EQ(SearchPath("").entries.size(), 4U);
  EXPECT_EQ(SearchPath("!!").entries.size(), 4U);
  EXPECT_EQ(SearchPath("Garden!!").entries.size(), 3U);
  EXPECT_EQ(SearchPath("TCPIP!!!Garden!!").entries.size(), 3U);
  EXPECT_EQ(SearchPath("Glashäuser!!").entries.size(), 2U);
  EXPECT_EQ(SearchPath("CN=Mill/O=Example!!").entries.size(), 1U);
  EXPECT_EQ(StandinOpenCount(), 0U);
}

TEST_F(Directories, ThatAreMissingDoNotOpen) {
  Start();
  DHANDLE directory = 0;
  EXPECT_EQ(OpenDirectory("Garden!!", &directory), kMissingFolder);
  NotesTerm();
  ASSERT_EQ(TryStart("Directory=nowhere\n"), 0);
  EXPECT_EQ(OpenDirectory("", &directory), kMissingFolder);
  EXPECT_EQ(directory, 0U);
}

TEST_F(Directories, OpenWithOptionsToo) {
  Start();
  DHANDLE directory = 0;
  TIMEDATE data = {{1, 1}}, other = {{1, 1}};
  EXPECT_EQ(NSFDbOpenExtended("", 0, 0, nullptr, &directory, &data, &other), 0);
  EXPECT_EQ(SearchDirectory(directory).status, 0);
  EXPECT_EQ(data.innards[1], 0U);
  EXPECT_EQ(other.innards[1], 0U);
}

TEST_F(Directories, TellTheirServerOrWhatTheConfigurationSays) {
  Start();
  WriteDirectory("Garden", 1);
  EXPECT_EQ(CanonicalPath(""), ".");
  EXPECT_EQ(CanonicalPath("!!"), ".");
  EXPECT_EQ(CanonicalPath("Garden!!"), "Garden!!");
  NotesTerm();
  WriteFile("Gärten/directory.json", R"({"generate": 1})");
  ASSERT_EQ(TryStart("Directory=Gärten/../Gärten\n"), 0);
  EXPECT_EQ(CanonicalPath(""), "Gärten/../Gärten");
}

TEST_F(Directories, TellThePathOfTheirFileIfItHasOne) {
  Start();
  WriteFile("servers/Garden/directory.json", R"({"path": "Süden!!Beet!!"})");
  EXPECT_EQ(CanonicalPath("Garden!!"), "Süden!!Beet!!");
}

TEST_F(Directories, AreFoundInNoHelpfulOrderButAlwaysInTheSame) {
  Start();
  WriteDirectory("Garden", 10);
  const std::vector<std::string> paths = SearchPath("Garden!!").Paths();
  EXPECT_FALSE(std::is_sorted(paths.begin(), paths.end()));
  EXPECT_FALSE(std::is_sorted(paths.rbegin(), paths.rend()));
  EXPECT_EQ(SearchPath("Garden!!").Paths(), paths);
  EXPECT_EQ(std::set<std::string>(paths.begin(), paths.end()).size(), 10U);
}

TEST_F(Directories, CanBeEmpty) {
  Start();
  WriteDirectory("Garden", 0);
  EXPECT_TRUE(SearchPath("Garden!!").entries.empty());
}

TEST_F(Directories, EndTheirSearchWithTheStatusOfTheCallback) {
  Start();
  WriteDirectory("Garden", 3);
  const FoundEntries found = SearchDirectory(Open("Garden!!"), 77);
  EXPECT_EQ(found.status, 77);
  EXPECT_EQ(found.entries.size(), 1U);
}

TEST_F(Directories, FailTheirSearchAfterSomeMatches) {
  Start();
  WriteDirectory("Garden", 3);
  StandinSetFaults(R"([{"entry": "NSFSearch", "call": 1, "matches": 2, "status": 77},
                       {"entry": "NSFSearch", "call": 2, "matches": 9, "status": 78},
                       {"entry": "NSFSearch", "call": 3, "matches": 0, "status": 79},
                       {"entry": "NSFSearch", "call": 4, "status": 80}])");
  const DHANDLE directory = Open("Garden!!");
  std::vector<std::pair<STATUS, std::size_t>> endings;
  for (int i = 0; i < 5; ++i) {
    const FoundEntries found = SearchDirectory(directory);
    endings.emplace_back(found.status, found.entries.size());
  }
  EXPECT_EQ(endings, (std::vector<std::pair<STATUS, std::size_t>>{
                         {77, 2}, {78, 3}, {79, 0}, {80, 0}, {0, 3}}));
}

TEST_F(Directories, FailByThePathThatTheyWereOpenedBy) {
  Start();
  WriteDirectory("Garden", 3);
  StandinSetFaults(R"([{"entry": "NSFSearch", "path": "Garden!!", "matches": 2, "status": 77},
                       {"entry": "NSFDbOpen", "path": "", "call": 2, "status": 78}])");
  EXPECT_EQ(SearchDirectory(Open("")).status, 0);
  EXPECT_EQ(SearchDirectory(Open("Garden!!")).status, 77);
  DHANDLE directory = 0;
  EXPECT_EQ(OpenDirectory("", &directory), 78);
}

TEST_F(Directories, CountAsDatabasesInTheLedger) {
  Start();
  Open("");
  EXPECT_EQ(StandinOpenCount(), 1U);
}

TEST_F(Directories, RecordHowTheyAreSearched) {
  Start();
  WriteDirectory("Glashäuser", 3);
  SearchPath("Glashäuser!!");
  EXPECT_EQ(RecordedArguments("NSFSearch"), nlohmann::json({{"path", "Glashäuser!!"},
                                                            {"formula", 0},
                                                            {"hasViewTitle", false},
                                                            {"searchFlags", 6},
                                                            {"classMask", 0x200A},
                                                            {"hasSince", false},
                                                            {"hasContext", true},
                                                            {"hasUntil", false}}));
}

}  // namespace larkspan::standin_test
