// The servers of the configuration: every option, message and code.
#include "tests/console/system/ListingTest.h"
#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan::console {
namespace {

constexpr char kNames[] =
    "\xC3\x96lm\xC3\xBChle/Garten\nAlso Nameless/Garten\nArboretum/Garten\nGarden\n"
    "Glash\xC3\xA4user/Garten\nMill\nMill 10/Example\nMill 9/Example\nMill/East/Example\n"
    "Mill/West/Example\nNameless/Example\nZinnia\nalder\n";

class ServersSystemTest : public ListingTest {
 protected:
  void UseMailServer(const std::string& name) { run_.AddConfiguration("MailServer=" + name); }
};

TEST_F(ServersSystemTest, TheyAreATableOfOneColumn) {
  UseMailServer("Garden");
  const ConsoleEnd end = Servers();
  EXPECT_EQ(end.code, 0u);
  EXPECT_EQ(end.output, std::string("Server\n") + kNames + "\n13 servers\n");
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(Servers({L"--quiet"}).output, std::string("Server\n") + kNames);
}

TEST_F(ServersSystemTest, CsvAndJsonHaveTheSameNames) {
  UseMailServer("Garden");
  const ConsoleEnd csv = Servers({L"--csv"});
  EXPECT_EQ(csv.code, 0u);
  EXPECT_TRUE(csv.output.starts_with("server\r\n\xC3\x96lm\xC3\xBChle/Garten\r\n")) << csv.output;
  EXPECT_TRUE(csv.output.ends_with("\r\nalder\r\n"));
  const Json json = Json::parse(Servers({L"--json"}).output);
  EXPECT_EQ(json.at("format"), "larkspan-servers");
  EXPECT_EQ(json.at("version"), 1);
  EXPECT_EQ(json.at("servers").size(), 13u);
  EXPECT_EQ(json.at("servers").at(12), "alder");
}

TEST_F(ServersSystemTest, ToAFileTheyAreTheSameBytes) {
  UseMailServer("Garden");
  const ConsoleEnd end = Servers({L"--csv", L"--to", to_});
  EXPECT_EQ(end.code, 0u);
  EXPECT_TRUE(end.output.starts_with("13 servers in ")) << end.output;
  EXPECT_EQ(ReadBytes(to_), Servers({L"--csv"}).output);
}

TEST_F(ServersSystemTest, WithoutAMailServerThereAreNone) {
  ExpectRefused(Servers({L"--csv"}), 2,
                "larkspan-console: the servers cannot be listed: Unable to read servers (");
}

TEST_F(ServersSystemTest, AMailServerWithoutANameIsARemark) {
  run_.AddDatabase(L"names.json", R"json({"$Connections": [{"Destination": "CN=Mill/O=Example"}],
                                          "($Servers)": [{"ServerName": "CN=Garden"}]})json");
  UseMailServer("");
  const ConsoleEnd end = Servers({L"--csv"});
  EXPECT_EQ(end.code, 0u);
  EXPECT_EQ(end.output, "server\r\nGarden\r\nMill/Example\r\n");
  EXPECT_EQ(end.errors,
            "larkspan-console: the first line of servers.txt is empty: MailServer has no name, or "
            "the Notes library does not translate it\n");
}

// The third name that is written is the one that the library does not translate.
TEST_F(ServersSystemTest, ANameThatIsNotTranslatedIsTold) {
  UseMailServer("Garden");
  run_.SetFaults(R"([{"entry": "OSTranslate", "call": 3, "status": 1}])");
  const ConsoleEnd end = Servers();
  EXPECT_EQ(end.code, 5u);
  EXPECT_FALSE(Holds(end.output, "Arboretum")) << end.output;
  EXPECT_TRUE(Holds(end.output, "\n12 servers\n")) << end.output;
  EXPECT_EQ(end.errors,
            "larkspan-console: Line 3 of servers.txt is empty: the Notes library does not "
            "translate that name\n"
            "larkspan-console: the listing is not whole: 1 line is damaged\n");
}

TEST_F(ServersSystemTest, ACrashIsTold) {
  UseMailServer("Garden");
  run_.SetFaults(R"([{"entry": "NAMELookup", "action": "accessViolation"}])");
  ExpectRefused(Servers(), 2,
                "the servers cannot be listed: The listing was ended by a crash; larkspan.exe "
                "ended with code 0xC0000005");
}

TEST_F(ServersSystemTest, ACrashBehindTheListLeavesIt) {
  UseMailServer("Garden");
  run_.SetFaults(R"([{"entry": "NotesTerm", "action": "accessViolation"}])");
  const ConsoleEnd end = Servers();
  EXPECT_EQ(end.code, 5u);
  EXPECT_TRUE(Holds(end.output, "\n13 servers\n"));
  EXPECT_TRUE(Holds(end.errors, "the listing is not whole: ")) << end.errors;
}

TEST_F(ServersSystemTest, AnIdFileIsSwitchedTo) {
  UseMailServer("Garden");
  const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", L"sesame");
  ExpectRefused(Servers({L"--id-file", L"ids\\no\u00E9.id"}), 2,
                "the servers cannot be listed: Unable to switch id (");
}

TEST_F(ServersSystemTest, HelpHasAnExampleAndNoServer) {
  const ConsoleEnd end = Run({L"servers", L"--help"});
  EXPECT_EQ(end.code, 0u);
  EXPECT_TRUE(Holds(end.output, "Example:\n  larkspan-console servers"));
  EXPECT_FALSE(Holds(end.output, "--server "));
}

}  // namespace
}  // namespace larkspan::console
