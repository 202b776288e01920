// Data directories without a list of their own show the files that lie in them.
#include <algorithm>

#include "tests/standin/DirectorySearching.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

using Paths = std::vector<std::string>;

class FolderListings : public StandinTest {
 protected:
  FolderListings() { Start(); }

  static Paths SortedPaths(const std::string& path) {
    Paths paths = SearchPath(path).Paths();
    std::sort(paths.begin(), paths.end());
    return paths;
  }
};

}  // namespace

TEST_F(FolderListings, ShowDatabasesAndFoldersAllTheWayDown) {
  WriteFile("servers/Garden/b.nsf", "{}");
  WriteFile("servers/Garden/c.NSF", "{}");
  WriteFile("servers/Garden/notes.txt", "{}");
  WriteFile("servers/Garden/Süd/Beete/d.nsf", "{}");
  EXPECT_EQ(SortedPaths("Garden!!"),
            (Paths{"Süd", "Süd\\Beete", "Süd\\Beete\\d.nsf", "b.nsf", "c.NSF"}));
  const FoundEntries found = SearchPath("Garden!!");
  EXPECT_EQ(found.At("Süd").match.noteClass, 0x2008);
  EXPECT_EQ(found.At("Süd").items.size(), 1U);
  EXPECT_EQ(found.At("b.nsf").match.noteClass, 0x2002);
}

TEST_F(FolderListings, LeaveOutTheServersOfTheLocalFolder) {
  WriteFile("a.nsf", "{}");
  WriteFile("servers/Garden/b.nsf", "{}");
  WriteFile("servers/Garden/servers/c.nsf", "{}");
  EXPECT_EQ(SortedPaths(""), (Paths{"a.nsf"}));
  EXPECT_EQ(SortedPaths("Garden!!"), (Paths{"b.nsf", "servers", "servers\\c.nsf"}));
}

TEST_F(FolderListings, AlsoStandBehindAFileThatOnlyTellsThePath) {
  WriteFile("a.nsf", "{}");
  WriteFile("directory.json", R"({"path": "here"})");
  EXPECT_EQ(SortedPaths(""), (Paths{"a.nsf"}));
}

TEST_F(FolderListings, TellWhatTheDatabasesSayOfThemselves) {
  WriteFile("a.nsf", R"({"title": "Kräuter", "categories": "Garten", "sizeKilobytes": 1024,
                         "replicaId": "0123456789ABCDEF", "dataModified": "1970-01-02",
                         "designModified": "1970-01-01"})");
  const FoundEntry entry = SearchPath("").At("a.nsf");
  EXPECT_EQ(entry.Text("$Info"), std::string("Kräuter\0Garten", 15));
  EXPECT_EQ(entry.items.at("$DATAMOD"), std::string("\0\4\xFF\xFF\xFF\xFF\x8D\x3D\x25\0", 10));
  EXPECT_EQ(entry.items.at("$NONDATAMOD"), std::string("\0\4\xFF\xFF\xFF\xFF\x8C\x3D\x25\0", 10));
  EXPECT_EQ(entry.items.at("$Length"), std::string("\0\3\0\0\0\0\0\0\x30\x41", 10));
  EXPECT_EQ(entry.match.noteTime.innards[1], 0x01234567U);
  EXPECT_EQ(entry.match.noteTime.innards[0], 0x89ABCDEFU);
}

TEST_F(FolderListings, LeaveOutWhatTheDatabasesDoNotSay) {
  WriteFile("a.nsf", "{}");
  const FoundEntry entry = SearchPath("").At("a.nsf");
  EXPECT_EQ(entry.items.size(), 2U);
  EXPECT_EQ(entry.Text("$Info"), std::string(1, '\0'));
}

TEST_F(FolderListings, ShowDamagedDatabasesWithTheirPathAlone) {
  WriteFile("a.nsf", "no JSON");
  EXPECT_EQ(SearchPath("").At("a.nsf").items.size(), 1U);
}

TEST_F(FolderListings, CutTitlesAsTheInformationDoes) {
  WriteFile("a.nsf", R"({"title": ")" + std::string(200, 't') + R"(", "categories": ")" +
                         std::string(200, 'c') + R"("})");
  EXPECT_EQ(SearchPath("").At("a.nsf").Text("$Info"),
            std::string(95, 't') + '\0' + std::string(31, 'c'));
}

}  // namespace larkspan::standin_test
