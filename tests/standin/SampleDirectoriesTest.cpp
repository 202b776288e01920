// The data directories and address books of the sample folder do what they are there for.
#include <algorithm>
#include <set>

#include "tests/standin/DirectorySearching.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

using TextSet = std::multiset<std::string>;

class SampleDirectories : public StandinTest {
 protected:
  SampleDirectories() { StartWithSamples(); }

  // All texts of both items that are not empty, in UTF-8.
  static TextSet LookUp(const char* server, const char* nameSpace, const std::string& item) {
    DHANDLE handle = 0;
    EXPECT_EQ(NAMELookup(server, 1, 1, nameSpace, 1, "", 2, (item + '\0').c_str(), &handle), 0);
    void* const result = OSLockObject(handle);
    WORD count = 0;
    void* const name = NAMELocateNextName(result, nullptr, &count);
    TextSet texts;
    for (void* match = nullptr; (match = NAMELocateNextMatch(result, name, match)) != nullptr;) {
      for (const WORD index : {0, 1}) {
        char text[256] = {};
        EXPECT_EQ(NAMEGetTextItem(match, index, 0, text, 255), 0);
        if (text[0] != '\0') texts.insert(ToUtf8(text));
      }
    }
    OSUnlockObject(handle);
    EXPECT_EQ(OSMemFree(handle), 0);
    return texts;
  }
};

}  // namespace

TEST_F(SampleDirectories, LocalOneHasEntriesWithEveryKindOfTrouble) {
  const FoundEntries found = SearchPath("");
  EXPECT_EQ(found.entries.size(), 13U);
  EXPECT_EQ(found.At("sample.nsf").Text("$Info"),
            std::string("Pflanzenregister / Plant Register\0Botanik; Garten & Park", 56));
  EXPECT_EQ(found.At("herbarium.nsf").items.at("$Info").size(), 128U + 2U);
  EXPECT_EQ(found.At("mail").match.noteClass, 0x2008);
  EXPECT_NE(found.At("Beete\\Österliche.nsf").Text("$Info").find('\n'), std::string::npos);
  TIMEDATE time = {{0, 0x001A4450}};
  EXPECT_EQ(TimeExtractJulianDate(&time), 1721424U);
  EXPECT_EQ(found.At("oldest.nsf").items.at("$DATAMOD").substr(2),
            std::string(reinterpret_cast<const char*>(&time), sizeof time));
}

TEST_F(SampleDirectories, OfServersHaveListsFilesOrGeneratedDatabases) {
  EXPECT_EQ(SearchPath("Garden!!").entries.size(), 3U);
  EXPECT_EQ(SearchPath("Glashäuser!!").Paths(), (std::vector<std::string>{"Österliche Beete.nsf"}));
  const std::vector<std::string> many = SearchPath("Large!!").Paths();
  EXPECT_EQ(std::set<std::string>(many.begin(), many.end()).size(), 10000U);
}

TEST_F(SampleDirectories, GreenhousesTellAPathWithTwoMarks) {
  DHANDLE directory = 0;
  ASSERT_EQ(OpenDirectory("Glashäuser!!", &directory), 0);
  char path[1024] = {};
  EXPECT_EQ(NSFDbPathGet(directory, path, nullptr), 0);
  EXPECT_EQ(ToUtf8(path), "Glashäuser!!Süd!!");
}

TEST_F(SampleDirectories, OverlongOneGivesAWellDatabaseFirst) {
  const FoundEntries found = SearchPath("Overlong!!");
  EXPECT_EQ(found.Paths(), (std::vector<std::string>{"well.nsf", "overlong.nsf"}));
  EXPECT_EQ(found.At("overlong.nsf").items.at("$Info").size(), 129U + 2U);
}

TEST_F(SampleDirectories, BooksNameServersTwiceAndWithoutNames) {
  EXPECT_EQ(
      LookUp(nullptr, "$Connections", "Destination"),
      (TextSet{"Garden", "CN=Mill/OU=West/O=Example", "CN=Glashäuser/O=Garten", "alder", "Zinnia",
               "CN=Mill 9/O=Example", "CN=Mill 10/O=Example", "CN=Nameless/O=Example"}));
  EXPECT_EQ(LookUp("Garden", "($Servers)", "ServerName"),
            (TextSet{"CN=Mill/OU=West/O=Example", "CN=Garden", "CN=Ölmühle/O=Garten",
                     "CN=Mill/OU=East/O=Example", "CN=Mill", "Zinnia", "CN=Arboretum/O=Garten",
                     "CN=Also Nameless/O=Garten"}));
}

TEST_F(SampleDirectories, BookOfTheGreenhousesHasADamagedName) {
  const std::string server = ToNotes(std::u16string_view(u"Glashäuser"));
  EXPECT_EQ(LookUp(server.c_str(), "($Servers)", "ServerName"),
            (TextSet{"CN=Glashäuser/O=Garten", "CN=Two=Signs/O=Garten"}));
}

TEST_F(SampleDirectories, ConfigurationNamesAMailServerThatHasABook) {
  char server[256] = {};
  EXPECT_NE(OSGetEnvironmentString("MailServer", server, 255), 0);
  EXPECT_STREQ(server, "Garden");
}

}  // namespace larkspan::standin_test
