// Fault plans: which calls a fault strikes, and what happens then.
#include <chrono>

#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr char kTwoNotes[] = R"({"chunkBytes": 100, "notes": [{"id": "902"}, {"id": "906"}]})";

class Faults : public StandinTest {
 protected:
  Faults() : database_(OpenDatabase(kTwoNotes)) {}

  STATUS Open(NOTEID id) const {
    DHANDLE note = 0;
    return NSFNoteOpen(database_, id, 0, &note);
  }

  std::vector<STATUS> OpenThreeTimes() const { return {Open(0x902), Open(0x902), Open(0x902)}; }

  DHANDLE database_;
};

using FaultDeathTest = Faults;
using Statuses = std::vector<STATUS>;

}  // namespace

TEST_F(Faults, StrikeEveryCallUnlessToldOtherwise) {
  StandinSetFaults(R"([{"entry": "NSFNoteOpen", "status": 551}])");
  EXPECT_EQ(OpenThreeTimes(), (Statuses{551, 551, 551}));
}

TEST_F(Faults, StrikeOneCall) {
  StandinSetFaults(R"([{"entry": "NSFNoteOpen", "call": 2, "status": "0x3600"}])");
  EXPECT_EQ(OpenThreeTimes(), (Statuses{0, 0x3600, 0}));
}

TEST_F(Faults, StrikeFromACallOn) {
  StandinSetFaults(R"([{"entry": "NSFNoteOpen", "from": 2, "status": 5}])");
  EXPECT_EQ(OpenThreeTimes(), (Statuses{0, 5, 5}));
}

TEST_F(Faults, CountOnlyCallsThatMeetTheConditions) {
  StandinSetFaults(R"([{"entry": "NSFNoteOpen", "note": "00000906", "call": 2, "status": 5}])");
  EXPECT_EQ(Open(0x906), 0);
  EXPECT_EQ(Open(0x902), 0);
  EXPECT_EQ(Open(0x906), 5);
}

TEST_F(Faults, OfOnePlanCountOnTheirOwn) {
  StandinSetFaults(R"([{"entry": "NSFNoteOpen", "call": 1, "status": 5},
                       {"entry": "NSFNoteOpen", "call": 2, "status": 6}])");
  EXPECT_EQ(OpenThreeTimes(), (Statuses{5, 6, 0}));
}

TEST_F(Faults, StrikeByNoteOfTheHandle) {
  StandinSetFaults(R"([{"entry": "DXLExportNote", "note": "906", "status": 1173}])");
  EXPECT_EQ(Export(OpenNote(0x902)).status, 0);
  EXPECT_EQ(Export(OpenNote(0x906)).status, 1173);
}

TEST_F(Faults, StrikeByExporter) {
  StandinSetFaults(R"([{"entry": "DXLCreateExporter", "exporter": 3, "status": 9},
                       {"entry": "DXLExportNote", "exporter": 2, "status": 1173}])");
  const DHANDLE note = OpenNote(0x902);
  EXPECT_EQ(Export(note).status, 0);
  EXPECT_EQ(Export(note).status, 1173);
  DHANDLE exporter = 0;
  EXPECT_EQ(DXLCreateExporter(&exporter), 9);
}

TEST_F(Faults, StrikeByItem) {
  StandinSetFaults(R"([{"entry": "NSFItemGetTextListEntries", "item": "$Fields", "status": 1},
                       {"entry": "NSFItemDelete", "item": "Ä", "status": 77}])");
  const DHANDLE note = OpenNote(0x902);
  EXPECT_EQ(NSFItemDelete(note, "\x01\xC4", 2), 77);
  EXPECT_EQ(NSFItemDelete(note, "A", 1), 552);
}

TEST_F(Faults, StrikeByPath) {
  StandinSetFaults(R"([{"entry": "NSFDbOpen", "path": "test.nsf", "status": 77}])");
  DHANDLE database = 0;
  EXPECT_EQ(NSFDbOpen("test.nsf", &database), 77);
  EXPECT_EQ(NSFDbOpen("other.nsf", &database), 259);
}

TEST_F(Faults, StrikeAfterChunksWereDelivered) {
  StandinSetFaults(R"([{"entry": "DXLExportNote", "note": "902", "chunks": 2, "status": 8},
                       {"entry": "DXLExportNote", "note": "906", "chunks": 999, "status": 8}])");
  const Exported some = Export(OpenNote(0x902));
  EXPECT_EQ(some.status, 8);
  EXPECT_EQ(some.chunks.size(), 2U);
  const Exported all = Export(OpenNote(0x906));
  EXPECT_EQ(all.status, 8);
  EXPECT_EQ(all.dxl.substr(all.dxl.size() - 12), "</document>\n");
}

TEST_F(Faults, LeaveEntryPointsWithoutAStatusDoingNothing) {
  StandinSetFaults(R"([{"entry": "OSTranslate", "call": 1, "status": 1},
                       {"entry": "OSLockObject", "status": 1}])");
  char out[8];
  EXPECT_EQ(OSTranslate(kTranslateNotesToUtf8, "abc", 3, out, 8), 0);
  EXPECT_EQ(OSTranslate(kTranslateNotesToUtf8, "abc", 3, out, 8), 3);
  DHANDLE memory = 0;
  ASSERT_EQ(OSMemAlloc(0, 8, &memory), 0);
  EXPECT_EQ(OSLockObject(memory), nullptr);
}

TEST_F(Faults, Wait) {
  StandinSetFaults(R"([{"entry": "NSFNoteOpen", "wait": 60}])");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(Open(0x902), 0);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(60));
}

TEST_F(Faults, Throw) {
  StandinSetFaults(R"([{"entry": "NSFNoteOpen", "action": "throw"}])");
  bool thrown = false;
  try {
    Open(0x902);
  } catch (...) {
    thrown = true;
  }
  EXPECT_TRUE(thrown);
  EXPECT_EQ(NSFDbClose(database_), 0);
}

TEST_F(Faults, OfADatabaseFileJoinThePlanWhenItIsFirstNamed) {
  WriteFile("a.nsf", R"({"faults": [{"entry": "NSFDbOpen", "path": "a.nsf", "status": 77},
                                    {"entry": "NSFDbQuotaGet", "call": 1, "status": 78}]})");
  QuotaInfo quota = {};
  EXPECT_EQ(NSFDbQuotaGet("test.nsf", &quota), 0);
  DHANDLE database = 0;
  EXPECT_EQ(NSFDbOpen("a.nsf", &database), 77);
  EXPECT_EQ(NSFDbQuotaGet("test.nsf", &quota), 78);
  EXPECT_EQ(NSFDbQuotaGet("test.nsf", &quota), 0);
}

TEST_F(FaultDeathTest, EndTheProcessAsTold) {
  StandinSetFaults(R"([{"entry": "NSFNoteOpen", "note": "902", "action": "exit", "code": 33},
                       {"entry": "NSFNoteOpen", "note": "906", "action": "exit"}])");
  EXPECT_EXIT(Open(0x902), testing::ExitedWithCode(33), "");
  EXPECT_EXIT(Open(0x906), testing::ExitedWithCode(1), "");
}

TEST_F(FaultDeathTest, CrashTheProcess) {
  for (const char* action : {"accessViolation", "stackOverflow", "abort", "exception"}) {
    const std::string plan =
        std::string(R"([{"entry": "NSFNoteOpen", "action": ")") + action + R"("}])";
    StandinSetFaults(plan.c_str());
    EXPECT_DEATH(Open(0x902), "") << action;
  }
}

TEST_F(FaultDeathTest, CrashAThreadWhileTheCallGoesOn) {
  StandinSetFaults(R"([{"entry": "NSFNoteOpen", "action": "crashThread"},
                       {"entry": "NSFNoteOpen", "wait": 60000}])");
  const auto start = std::chrono::steady_clock::now();
  EXPECT_DEATH(Open(0x902), "");
  EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(60));
}

TEST_F(FaultDeathTest, ThatMakeNoSenseAreRefused) {
  for (const char* plan :
       {R"([{"entry": "NSFNoteOpn", "status": 1}])", R"([{"entry": "NSFNoteOpen"}])",
        R"([{"entry": "NSFNoteOpen", "status": 1, "calls": 2}])", R"([{"status": 1}])",
        R"([{"entry": "NSFSearch", "status": 1, "chunks": 2}])",
        R"([{"entry": "DXLExportNote", "status": 1, "matches": 2}])",
        R"([{"entry": "NSFNoteOpen", "action": "explode"}])", R"({})", "nonsense"}) {
    EXPECT_EXIT(StandinSetFaults(plan), testing::ExitedWithCode(70), "nnotes:") << plan;
  }
}

}  // namespace larkspan::standin_test
