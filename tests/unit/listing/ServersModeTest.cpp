#include "listing/ServersMode.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/faults/FileFaults.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/unit/listing/ListingTest.h"

namespace larkspan {
namespace {

class ServersModeTest : public ListingTest {
 protected:
  ServersModeTest() { LeaveOutDebugLines(); }

  // The mail server, the destinations of the local book and the servers of the mail server's book,
  // the lists as the elements of JSON arrays of entries.
  void WriteBooks(const std::string& mailServer, const std::string& connections,
                  const std::string& servers) {
    if (!mailServer.empty()) AddConfiguration("MailServer=" + mailServer);
    WriteData(L"names.json", R"({"$Connections": [)" + connections + "]}");
    WriteData(L"servers/CN=Mill/O=Example/names.json",
              R"json({"($Servers)": [)json" + servers + "]}");
  }

  static std::string Destination(const std::string& name) {
    return R"({"Destination": ")" + name + "\"}";
  }

  static std::string Server(const std::string& name) {
    return R"({"ServerName": ")" + name + "\"}";
  }

  std::string Listed() {
    RunServersMode();
    return ReadBytes(PathOf(L"servers.txt"));
  }
};

constexpr char kMill[] = "CN=Mill/O=Example";

TEST_F(ServersModeTest, AllThreeSourcesAreListedAbbreviated) {
  WriteBooks(kMill, Destination("CN=Barn/O=Example"), Server("CN=Well/O=Example"));
  Configure();
  EXPECT_EQ(Listed(), "Barn/Example\r\nMill/Example\r\nWell/Example\r\n");
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ServersModeTest, EachNameIsListedOnceInAscendingOrderOfItsBytes) {
  WriteBooks(kMill, Destination("b") + "," + Destination("B") + "," + Destination("Mill/Example"),
             Server("a") + "," + Server("bb") + "," + Server("b") + "," + Server(kMill) + "," +
                 Server("\u00c4"));
  Configure();
  // The letter with dots begins with the byte 01 in the Notes character set.
  EXPECT_EQ(Listed(), "\xC3\x84\r\nB\r\nMill/Example\r\na\r\nb\r\nbb\r\n");
}

TEST_F(ServersModeTest, EmptyItemsAddNothing) {
  WriteBooks(kMill, R"({}, {"Destination": ""}, {"Destination": null})", "");
  Configure();
  EXPECT_EQ(Listed(), "Mill/Example\r\n");
}

TEST_F(ServersModeTest, BothItemsOfAMatchAreRead) {
  WriteBooks(kMill, R"({"Destination": "a", "": "b"})", "");
  Configure();
  EXPECT_EQ(Listed(), "Mill/Example\r\na\r\nb\r\n");
}

TEST_F(ServersModeTest, NamesAreCutAt255Bytes) {
  WriteBooks(kMill, Destination(std::string(300, 'x')), "");
  Configure();
  EXPECT_EQ(Listed(), "Mill/Example\r\n" + std::string(255, 'x') + "\r\n");
}

TEST_F(ServersModeTest, MailServerIsCutAt255Bytes) {
  WriteBooks(std::string(300, 'x'), "", "");
  Configure();
  RunServersMode();
  EXPECT_NE(Arguments("NAMELookup").find(R"("server":")" + std::string(255, 'x') + '"'),
            std::string::npos);
  EXPECT_NE(Arguments("DNAbbreviate").find('"' + std::string(255, 'x') + '"'), std::string::npos);
}

TEST_F(ServersModeTest, BooksAreAskedAsTheyAreKept) {
  WriteBooks(kMill, "", "");
  Configure();
  RunServersMode();
  EXPECT_EQ(Arguments("NAMELookup"),
            R"([{"flags":1,"items":["Destination",""],"nameSpaces":["$Connections"],)"
            R"("names":[""],"server":null},)"
            R"json({"flags":1,"items":["ServerName",""],"nameSpaces":["($Servers)"],)json"
            R"("names":[""],"server":"CN=Mill/O=Example"}])");
}

notes_api::STATUS LARKSPAN_NOTES_CALL AbbreviateToNothing(notes_api::DWORD, const char*,
                                                          const char*, char* out, notes_api::WORD,
                                                          notes_api::WORD*) {
  *out = '\0';
  return 0;
}

TEST_F(ServersModeTest, MailServerWithoutANameIsAnEmptyFirstLine) {
  WriteBooks(kMill, Destination("a"), "");
  Configure();
  const ReplacedEntryPoint replaced("DNAbbreviate", AbbreviateToNothing);
  EXPECT_EQ(Listed(), "\r\n");
}

TEST_F(ServersModeTest, MissingMailServerIsAnErrorAndAnEmptyFile) {
  WriteBooks("", Destination("a"), "");
  Configure();
  EXPECT_EQ(Listed(), "");
  EXPECT_EQ(OnlyError(), "Unable to read servers (Configuration names no mail server)");
  EXPECT_EQ(Calls("NAMELookup"), 0);
  EXPECT_EQ(Calls("NotesTerm"), 1);
}

struct ListingFailure {
  const char* entry;
  int call;
};

class ServersFailureTest : public ServersModeTest,
                           public testing::WithParamInterface<ListingFailure> {};

TEST_P(ServersFailureTest, IsAnErrorAndLeavesTheFileEmpty) {
  WriteBooks(kMill, Destination("a"), Server("b"));
  ConfigureWithFaults(std::string(R"([{"entry": ")") + GetParam().entry + R"(", "call": )" +
                      std::to_string(GetParam().call) + R"(, "status": 6409}])");
  EXPECT_EQ(Listed(), "");
  EXPECT_TRUE(OnlyError().starts_with("Unable to read servers (")) << OnlyError();
  EXPECT_EQ(Calls("NotesTerm"), 1);
  EXPECT_EQ(LeftOpen(), kNothingOpen);
}

INSTANTIATE_TEST_SUITE_P(
    Calls, ServersFailureTest,
    testing::Values(ListingFailure{"DNAbbreviate", 1}, ListingFailure{"DNAbbreviate", 2},
                    ListingFailure{"DNAbbreviate", 3}, ListingFailure{"DNAbbreviate", 5},
                    ListingFailure{"NAMELookup", 1}, ListingFailure{"NAMELookup", 2}));

TEST_F(ServersModeTest, ItemThatCannotBeReadIsAsGoodAsEmpty) {
  WriteBooks(kMill, Destination("a") + "," + Destination("b"), Server("c"));
  ConfigureWithFaults(R"([{"entry": "NAMEGetTextItem", "status": 6409}])");
  EXPECT_EQ(Listed(), "Mill/Example\r\n");
  EXPECT_EQ(LogLines(), Lines());
}

void* LARKSPAN_NOTES_CALL LocateNoName(void*, void*, notes_api::WORD* matches) {
  *matches = 1;
  return nullptr;
}

TEST_F(ServersModeTest, ResultWithoutANameAddsNothing) {
  WriteBooks(kMill, Destination("a"), Server("b"));
  Configure();
  const ReplacedEntryPoint replaced("NAMELocateNextName", LocateNoName);
  EXPECT_EQ(Listed(), "Mill/Example\r\n");
}

void* LARKSPAN_NOTES_CALL LocateNoMatch(void*, void*, void*) { return nullptr; }

TEST_F(ServersModeTest, MatchThatIsNotThereAddsNothing) {
  WriteBooks(kMill, Destination("a"), Server("b"));
  Configure();
  const ReplacedEntryPoint replaced("NAMELocateNextMatch", LocateNoMatch);
  EXPECT_EQ(Listed(), "Mill/Example\r\n");
}

TEST_F(ServersModeTest, ResultThatCannotBeLockedIsAnErrorAndIsFreed) {
  WriteBooks(kMill, Destination("a"), "");
  ConfigureWithFaults(R"([{"entry": "OSLockObject", "status": 273}])");
  EXPECT_EQ(Listed(), "");
  EXPECT_TRUE(OnlyError().starts_with("Unable to read servers (")) << OnlyError();
  EXPECT_EQ(LeftOpen(), kNothingOpen);
}

TEST_F(ServersModeTest, FullDiskIsAnErrorAfterWholeLines) {
  WriteBooks(kMill, Destination("a"), Server("b"));
  Configure();
  const FileFaults faults("write servers.txt 2- diskFull");
  EXPECT_EQ(Listed(), "Mill/Example\r\n");
  EXPECT_EQ(OnlyError(), "Unable to write output file");
}

}  // namespace
}  // namespace larkspan
