// What directory.json may say.
#include "tests/standin/DirectorySearching.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr STATUS kDamagedDirectory = 554;

class DirectoryFiles : public StandinTest {
 protected:
  DirectoryFiles() { Start(); }

  STATUS OpenWith(const std::string& json) const {
    WriteFile("directory.json", json);
    DHANDLE directory = 0;
    return OpenDirectory("", &directory);
  }

  FoundEntry EntryWith(const std::string& json) const {
    WriteFile("directory.json", R"({"entries": [)" + json + "]}");
    const FoundEntries found = SearchPath("");
    EXPECT_EQ(found.entries.size(), 1U);
    return found.entries.at(0);
  }

  std::string ValueWith(const std::string& json) const {
    return EntryWith(R"({"items": {"$Length": )" + json + "}}").items.at("$Length");
  }

  static std::string Bytes(std::initializer_list<int> bytes) {
    return {bytes.begin(), bytes.end()};
  }
};

}  // namespace

TEST_F(DirectoryFiles, HoldItemsWithValuesOfEveryType) {
  EXPECT_EQ(ValueWith(R"({"number": 1048576})"), Bytes({0, 3, 0, 0, 0, 0, 0, 0, 0x30, 0x41}));
  EXPECT_EQ(ValueWith(R"({"text": "é\u0000\n"})"), Bytes({0, 5, 1, '\xE9', 0, '\n'}));
  EXPECT_EQ(ValueWith(R"({"textList": ["a"]})"), Bytes({1, 5, 1, 0, 1, 0, 'a'}));
  EXPECT_EQ(ValueWith(R"({"dateTime": "1970-01-01T00:00:01Z"})"),
            Bytes({0, 4, 100, 0, 0, 0, '\x8C', 0x3D, 0x25, 0}));
  EXPECT_EQ(ValueWith(R"({"bytes": "00 04 01"})"), Bytes({0, 4, 1}));
  EXPECT_EQ(ValueWith(R"({"bytes": ""})"), "");
}

TEST_F(DirectoryFiles, HoldItemsOfAnyNameOrNone) {
  EXPECT_TRUE(EntryWith("{}").items.empty());
  const FoundEntry entry =
      EntryWith(R"({"items": {"$Path": {"text": "a.nsf"}, "Straße": {"text": "b"}}})");
  EXPECT_EQ(entry.items.size(), 2U);
  EXPECT_EQ(entry.Text("$Path"), "a.nsf");
  EXPECT_EQ(entry.Text(ToNotes(std::u16string_view(u"Straße"))), "b");
}

TEST_F(DirectoryFiles, HoldTheBytesOfTheMatch) {
  const FoundEntry entry = EntryWith(R"({"matchBytes": "01 02 03 04 05 06 07 08"})");
  EXPECT_EQ(entry.match.noteTime.innards[0], 0x04030201U);
  EXPECT_EQ(entry.match.noteTime.innards[1], 0x08070605U);
  EXPECT_EQ(EntryWith("{}").match.noteTime.innards[1], 0U);
}

TEST_F(DirectoryFiles, TellFoldersFromDatabases) {
  EXPECT_EQ(EntryWith(R"({"folder": true})").match.noteClass, 0x2008);
  EXPECT_EQ(EntryWith(R"({"folder": false})").match.noteClass, 0x2002);
  EXPECT_EQ(EntryWith("{}").match.noteClass, 0x2002);
}

TEST_F(DirectoryFiles, MakeDatabasesOnTheFlyBehindTheGivenOnes) {
  WriteFile("directory.json",
            R"({"entries": [{"items": {"$Path": {"text": "a.nsf"}}}], "generate": 2})");
  const FoundEntries found = SearchPath("");
  EXPECT_EQ(found.entries.size(), 3U);
  EXPECT_EQ(found.At("a.nsf").items.size(), 1U);
  const FoundEntry first = found.At("lots\\lot10000.nsf");
  EXPECT_EQ(first.Text("$Info"), std::string("Seed lot 0\0", 11));
  EXPECT_EQ(first.items.at("$Length"), Bytes({0, 3, 0, 0, 0, 0, 0, 0, 0x10, 0x41}));
  const FoundEntry second = found.At("lots\\lot10001.nsf");
  EXPECT_EQ(second.Text("$Info"), std::string("Seed lot 1\0", 11));
  EXPECT_EQ(second.match.noteTime.innards[0], 1U);
  EXPECT_NE(second.items.at("$DATAMOD"), first.items.at("$DATAMOD"));
  EXPECT_NE(second.items.at("$DATAMOD"), second.items.at("$NONDATAMOD"));
}

TEST_F(DirectoryFiles, AreReadAnewAtEachOpen) {
  WriteFile("directory.json", R"({"generate": 1})");
  EXPECT_EQ(SearchPath("").entries.size(), 1U);
  WriteFile("directory.json", R"({"generate": 2})");
  EXPECT_EQ(SearchPath("").entries.size(), 2U);
}

TEST_F(DirectoryFiles, HoldSummariesOfUpTo65535Bytes) {
  // Head, lengths, name and type word take 4 + 4 + 1 + 2 bytes.
  const auto entryOf = [](std::size_t textBytes) {
    return R"({"items": {"A": {"text": ")" + std::string(textBytes, 'x') + R"("}}})";
  };
  EXPECT_EQ(EntryWith(entryOf(65524)).match.summaryLength, 65535);
  EXPECT_EQ(OpenWith(R"({"entries": [)" + entryOf(65525) + "]}"), kDamagedDirectory);
}

TEST_F(DirectoryFiles, ThatMakeNoSenseDoNotOpen) {
  for (const char* json :
       {"no JSON", "[]", R"({"entry": []})", R"({"generate": -1})", R"({"generate": "a"})",
        R"({"path": 5})", R"({"entries": [{"item": {}}]})", R"({"entries": [5]})",
        R"({"entries": [{"matchBytes": "01 02"}]})", R"({"entries": [{"folder": 1}]})",
        R"({"entries": [{"items": {"$Path": "a.nsf"}}]})",
        R"({"entries": [{"items": {"$Path": {"txt": "a.nsf"}}}]})"}) {
    EXPECT_EQ(OpenWith(json), kDamagedDirectory) << json;
  }
  EXPECT_EQ(OpenWith("{}"), 0);
}

}  // namespace larkspan::standin_test
