// The ledger: what the library remembers of how it was used.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

using nlohmann::json;

json CurrentLedger() { return json::parse(StandinLedgerJson()); }

STATUS LARKSPAN_NOTES_CALL IgnoreMatch(void*, SearchMatch*, ItemTable*) { return 0; }

class Ledgers : public StandinTest {
 protected:
  json LedgerLine() const { return json::parse(ReadFile("ledger.json")); }
};

}  // namespace

TEST_F(Ledgers, CountCallsOfEachEntryPoint) {
  Start();
  DHANDLE table = 0;
  IDCreateTable(0, &table);
  IDInsert(table, 4, nullptr);
  IDInsert(table, 8, nullptr);
  const json calls = CurrentLedger()["calls"];
  EXPECT_EQ(calls, json({{"NotesInitExtended", 1}, {"IDCreateTable", 1}, {"IDInsert", 2}}));
}

TEST_F(Ledgers, CountWhatIsOpenByKind) {
  const DHANDLE database = OpenDatabase(DocumentWith(R"({"name": "A", "text": "a"})"));
  const DHANDLE note = OpenNote(kDocument);
  BlockId value = {};
  NSFItemInfo(note, "A", 1, nullptr, nullptr, &value, nullptr);
  OSLockObject(value.pool);
  DHANDLE memory = 0, table = 0, exporter = 0;
  OSMemAlloc(0, 8, &memory);
  IDCreateTable(0, &table);
  DXLCreateExporter(&exporter);
  EXPECT_NE(database, 0U);
  EXPECT_EQ(CurrentLedger()["open"], json({{"database", 1},
                                           {"note", 1},
                                           {"idTable", 1},
                                           {"memory", 1},
                                           {"lock", 1},
                                           {"exporter", 1},
                                           {"collection", 0},
                                           {"keyFile", 0}}));
}

TEST_F(Ledgers, AreWrittenAsOneLineWhenTheRuntimeEnds) {
  for (int i = 0; i < 2; ++i) {
    Start("StandinLedger=ledger.json\n");
    NotesTerm();
  }
  const std::string lines = ReadFile("ledger.json");
  ASSERT_EQ(std::count(lines.begin(), lines.end(), '\n'), 2);
  const json first = json::parse(lines.substr(0, lines.find('\n')));
  EXPECT_EQ(first["calls"], json({{"NotesInitExtended", 1}, {"NotesTerm", 1}}));
  EXPECT_EQ(first["open"]["database"], 0);
  EXPECT_FALSE(first.contains("order"));
}

TEST_F(Ledgers, ShowWhatWasLeftOpenAtTheEnd) {
  Start("StandinLedger=ledger.json\n");
  DHANDLE table = 0;
  IDCreateTable(0, &table);
  NotesTerm();
  EXPECT_EQ(LedgerLine()["open"]["idTable"], 1);
  EXPECT_EQ(CurrentLedger()["open"]["idTable"], 1);
}

TEST_F(Ledgers, HoldTheOrderOfCallsWhenWanted) {
  Start("StandinTrace=1\nStandinLedger=ledger.json\n");
  DHANDLE table = 0;
  IDCreateTable(0, &table);
  IDDestroyTable(table);
  NotesTerm();
  EXPECT_EQ(LedgerLine()["order"],
            json({"NotesInitExtended", "IDCreateTable", "IDDestroyTable", "NotesTerm"}));
}

TEST_F(Ledgers, HoldTheArgumentsOfTheStart) {
  Start();
  const json start = CurrentLedger()["arguments"]["NotesInitExtended"];
  EXPECT_EQ(start["argc"], 2);
  EXPECT_EQ(start["argv"][0], "test");
  EXPECT_EQ(start["argv"][1].get<std::string>().substr(0, 1), "=");
}

TEST_F(Ledgers, HoldAllSixteenArgumentsOfASearch) {
  const DHANDLE database = OpenDatabase("{}");
  TIME local = {};
  local.year = 1900;
  local.month = 1;
  local.day = 1;
  ASSERT_EQ(TimeLocalToGM(&local), 0);
  char title[] = "t";
  EXPECT_EQ(NSFSearchExtended3(database, 2, 3, 4, title, 16, 0x80000002, 8, 9, 10, 0x7FFF,
                               &local.gm, IgnoreMatch, nullptr, nullptr, 16),
            0);
  const json arguments = CurrentLedger()["arguments"];
  EXPECT_EQ(arguments["NSFSearchExtended3"],
            json({true, 2, 3, 4, true, 16, 2147483650U, 8, 9, 10, 32767, "19000101T000000,00+00",
                  true, false, false, 16}));
  EXPECT_EQ(arguments["TimeLocalToGM"], json({1900, 1, 1, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(Ledgers, HoldTheSequenceOfExporterProperties) {
  Start();
  DHANDLE exporters[2] = {};
  std::uint32_t one = 1;
  char text[] = "<run/>";
  DXLCreateExporter(&exporters[0]);
  DXLCreateExporter(&exporters[1]);
  DXLSetExporterProperty(exporters[1], 39, &one);
  DXLSetExporterProperty(exporters[0], 14, text);
  DXLSetExporterProperty(exporters[0], 4711, &one);
  EXPECT_EQ(CurrentLedger()["arguments"]["DXLSetExporterProperty"],
            json({{2, 39, 1}, {1, 14, "<run/>"}, {1, 4711, nullptr}}));
}

TEST_F(Ledgers, HoldTheArgumentsOfAnExtendedOpen) {
  Start();
  WriteFile("a.nsf", "{}");
  DHANDLE database = 0;
  NSFDbOpenExtended("a.nsf", 3, MakeNamesList("CN=Imke", 7), nullptr, &database, nullptr, nullptr);
  EXPECT_EQ(CurrentLedger()["arguments"]["NSFDbOpenExtended"],
            json({{"path", "a.nsf"},
                  {"options", 3},
                  {"names", {{"authentication", 7}, {"name", "CN=Imke"}}},
                  {"hasSince", false}}));
}

TEST_F(Ledgers, HoldTheArgumentsOfIdentities) {
  WriteFile("a.id", R"({"name": "CN=A", "password": "p"})");
  OpenDatabase(DocumentWith(""));
  SECKFMSwitchToIDFile("a.id", "p", nullptr, 0, 8, nullptr);
  HKFC keyFile = nullptr;
  ASSERT_EQ(SECKFMOpen(&keyFile, "a.id", "p", 1, 0, nullptr), 0);
  NSFNoteCipherDecrypt(OpenNote(kDocument), keyFile, 1, nullptr, 0, nullptr);
  const json arguments = CurrentLedger()["arguments"];
  EXPECT_EQ(arguments["SECKFMSwitchToIDFile"]["flags"], 8);
  EXPECT_EQ(arguments["SECKFMOpen"], json({{"idFile", "a.id"}, {"options", 1}}));
  EXPECT_EQ(arguments["NSFNoteCipherDecrypt"]["options"], 1);
}

}  // namespace larkspan::standin_test
