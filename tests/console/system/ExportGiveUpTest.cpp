// Limits to what may be lost.
#include "tests/console/system/ExportTest.h"

namespace larkspan::console {
namespace {

using testing::DocumentsJson;
using testing::FaultsMember;

class ExportGiveUpTest : public ExportTest {
 protected:
  void AddNotes(int count, const std::string& faults) {
    run_.AddDatabase(database_, DocumentsJson(count, FaultsMember(faults)));
  }
};

// Each open takes a while, so that the run is stopped long before its end.
constexpr char kServerIsGone[] =
    R"({"entry": "NSFNoteOpen", "from": 3, "wait": 150, "status": 2055})";

TEST_F(ExportGiveUpTest, SoManyLossesInARowForOneCauseEndTheRun) {
  AddNotes(60, kServerIsGone);
  const ConsoleEnd end = Export({L"--give-up", L"3", L"--json"});
  EXPECT_EQ(end.code, 5u) << end.output;
  EXPECT_EQ(EventsOf(end.output, "stop").at(0).at("by"), "give-up");
  EXPECT_EQ(Outcome().at("stop").at("by"), "give-up");
  EXPECT_TRUE(Holds(Outcome().at("reason"), "given up"));
  const Json notes = Outcome().at("account").at("notes");
  EXPECT_EQ(notes.at("exported"), 2);
  EXPECT_GE(notes.at("lost"), 3);
  EXPECT_LT(notes.at("lost"), 30);
}

TEST_F(ExportGiveUpTest, WithoutALimitAllNotesAreTried) {
  AddNotes(6, kServerIsGone);
  EXPECT_EQ(Export().code, 3u);
  EXPECT_EQ(Outcome().at("account").at("notes").at("lost"), 4);
}

TEST_F(ExportGiveUpTest, AFinishedNoteInBetweenGoesOn) {
  AddNotes(7, R"({"entry": "NSFNoteOpen", "note": "00000902", "wait": 150, "status": 2055},
                 {"entry": "NSFNoteOpen", "note": "00000906", "wait": 150, "status": 2055},
                 {"entry": "NSFNoteOpen", "note": "0000090E", "wait": 150, "status": 2055},
                 {"entry": "NSFNoteOpen", "note": "00000912", "wait": 150, "status": 2055},
                 {"entry": "NSFNoteOpen", "note": "00000916", "wait": 150, "status": 546})");
  EXPECT_EQ(Export({L"--give-up", L"3"}).code, 3u);
  EXPECT_EQ(Outcome().at("account").at("notes").at("lost"), 5);
}

TEST_F(ExportGiveUpTest, CrashesInARowAreOneCause) {
  // Each worker hears of the stop before it comes to its note.
  AddNotes(60, R"({"entry": "DXLExportNote", "action": "accessViolation"},
                  {"entry": "NSFDbOpen", "wait": 400})");
  EXPECT_EQ(Export({L"--give-up", L"3"}).code, 5u);
  EXPECT_LT(Outcome().at("account").at("notes").at("lost"), 30);
}

TEST_F(ExportGiveUpTest, MoreLossesThanAllowedAreIncomplete) {
  AddNotes(20, R"({"entry": "NSFNoteOpen", "note": "00000906", "status": 546},
                  {"entry": "NSFNoteOpen", "note": "0000090E", "status": 546})");
  const std::pair<const wchar_t*, std::uint32_t> rows[] = {{L"1", 5},   {L"2", 3},    {L"0", 5},
                                                           {L"10%", 3}, {L"9.9%", 5}, {L"100%", 3}};
  const std::wstring first = out_;
  for (const auto& [limit, code] : rows) {
    out_ = first + limit;
    EXPECT_EQ(Export({L"--max-losses", limit}).code, code) << limit;
    EXPECT_EQ(Outcome().at("reason") == "more is lost than --max-losses allows", code == 5);
  }
}

TEST_F(ExportGiveUpTest, NoLossIsWithinEveryLimit) {
  run_.AddDatabase(database_, DocumentsJson(1));
  EXPECT_EQ(Export({L"--max-losses", L"0"}).code, 0u);
}

}  // namespace
}  // namespace larkspan::console
