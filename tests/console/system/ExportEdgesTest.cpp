// What goes wrong beside the export: a record that cannot be written, a caller that leaves, a list
// of notes that is damaged, a note that is tried again in vain.
#include <filesystem>

#include "tests/console/system/ExportTest.h"

namespace larkspan::console {
namespace {

using testing::DocumentsJson;
using testing::FaultsMember;

constexpr char kViewsCrash[] =
    R"({"entry": "NIFOpenCollection", "note": "00000136", "action": "accessViolation"})";
constexpr char kViewsHang[] =
    R"({"entry": "NIFOpenCollection", "note": "00000136", "action": "hang"})";

class ExportEdgesTest : public ExportTest {
 protected:
  void UseSampleWith(const std::string& faults) {
    database_ = L"sample.nsf";
    run_.SetFaults("[" + faults + "]");
  }

  // Ends the console by force while the worker hangs in the third of five notes.
  void CutOffInTheThirdNote() {
    run_.AddDatabase(database_, DocumentsJson(5));
    run_.SetFaults(R"([{"entry": "DXLExportNote", "note": "0000090A", "action": "hang"}])");
    const auto process = StartExport();
    AwaitFile(out_ + L"\\data\\00000906.dxl");
    process->EndByForce();
    process->AwaitNothingLeft();
    run_.ChangeFaults("[]");
  }
};

TEST_F(ExportEdgesTest, LostViewsCountWhenTheRecordCannotBeWritten) {
  UseSampleWith(R"({"entry": "NIFOpenCollection", "note": "00000136", "wait": 5000},)" +
                std::string(kViewsCrash));
  const auto process = StartExport();
  AwaitFile(out_ + L"\\views\\00000132.xml");
  // In the way of the stage.
  std::filesystem::create_directory(out_ + L"\\outcome.json.new");
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 5u) << end.output;
  EXPECT_TRUE(Holds(end.output, "Lost: 00000136")) << end.output;
}

TEST_F(ExportEdgesTest, ACrashBehindAHangAmongTheViewsIsACrash) {
  UseSampleWith(std::string(kViewsHang) +
                R"(,{"entry": "DXLExportNote", "note": "000008FE", "action": "accessViolation"})");
  const ConsoleEnd end = Export({L"--stall", kShortStall, L"--json"});
  EXPECT_EQ(end.code, 3u) << end.output;
  const std::vector<Json> restarts = EventsOf(end.output, "restart");
  ASSERT_EQ(restarts.size(), 2u);
  EXPECT_EQ(restarts[0].at("cause"), "stall");
  EXPECT_EQ(restarts[1].at("cause"), "crash");
}

TEST_F(ExportEdgesTest, ViewsThatWereNotReachedAreNamedWhereTheirNotesAreExported) {
  UseSampleWith(kViewsCrash);
  EXPECT_EQ(Export().code, 3u);
  const Json lost = Outcome().at("lostViews");
  ASSERT_EQ(lost.size(), 12u);
  for (const Json& view : lost) EXPECT_TRUE(view.contains("id")) << view;
}

TEST_F(ExportEdgesTest, ViewsWithoutAFileAreAWarning) {
  database_ = L"sample.nsf";
  const ConsoleEnd end = Export({L"--json"});
  EXPECT_EQ(end.code, 0u) << end.output;
  const std::vector<Json> warnings = EventsOf(end.output, "warning");
  ASSERT_EQ(warnings.size(), 1u);
  EXPECT_EQ(warnings[0].at("warning"), "views");
  EXPECT_TRUE(Holds(warnings[0].at("text"), "2 of 14 views have no file")) << warnings[0];
}

TEST_F(ExportEdgesTest, TheAclOfTheFirstRunIsNoContradiction) {
  // The second run's worker cannot export the access control list.
  UseSampleWith(R"({"entry": "NIFOpenCollection", "note": "00000136", "wait": 6000},)" +
                std::string(kViewsCrash));
  const auto process = StartExport();
  AwaitFile(out_ + L"\\views\\00000132.xml");
  run_.ChangeFaults(R"([{"entry": "DXLExportACL", "status": 585}])");
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 3u) << end.output;
  EXPECT_TRUE(Exists(out_ + L"\\acl.dxl"));
}

// A caller that has written its word closes its end, and nothing more comes from there.
TEST_F(ExportEdgesTest, AWordThatCameBeforeTheEndOfInputCounts) {
  run_.AddDatabase(database_, DocumentsJson(2));
  for (int turn = 0; turn < 3; ++turn) {
    const std::wstring out = out_ + std::to_wstring(turn);
    const auto process = Start({L"export", L"--path", database_, L"--out", out, L"--notes-ini",
                                run_.ConfigurationArgument().substr(1), L"--atomic", L"--confirm",
                                L"--stop-on-stdin-end", L"--json"});
    process->AwaitOutput("\"ready\"");
    process->Write("place\n");
    process->EndInput();
    EXPECT_EQ(process->WaitForEnd().code, 0u);
    EXPECT_TRUE(Exists(out + L"\\idtable.txt"));
  }
}

TEST_F(ExportEdgesTest, ADamagedListIsNoReasonToBeginAnewOverItsNotes) {
  CutOffInTheThirdNote();
  const std::string log = ReadIfThere(L"audit.txt");
  WriteBytes(out_ + L"\\idtable.txt", "00000902\r\nrubbish\r\n");
  const ConsoleEnd end = Export({L"--resume"});
  EXPECT_EQ(end.code, 2u) << end.output;
  EXPECT_TRUE(Holds(end.output + end.errors, "idtable.txt is damaged")) << end.output;
  EXPECT_EQ(ReadIfThere(L"audit.txt"), log);
  EXPECT_EQ(FilesIn("data").size(), 2u);
}

TEST_F(ExportEdgesTest, AnotherServerIsRefusedWithoutAPathToo) {
  CutOffInTheThirdNote();
  EXPECT_EQ(Run({L"export", L"--resume", L"--server", L"Other", L"--out", out_}).code, 2u);
  EXPECT_EQ(Run({L"export", L"--resume", L"--out", out_}).code, 0u);
}

TEST_F(ExportEdgesTest, ADesignFileComesBackWhenItsNoteIsTriedAgainInVain) {
  run_.AddDatabase(database_, R"({"notes": [{"id": "00000202", "class": "form",
      "items": [{"name": "$Body", "richText": ["one"]}]}]})");
  run_.SetFaults(R"([{"entry": "DXLExportNote", "exporter": 5, "action": "hang"}])");
  const auto process = StartExport();
  AwaitFile(out_ + L"\\design\\00000202.dxl");
  process->EndByForce();
  process->AwaitNothingLeft();
  run_.ChangeFaults(R"([{"entry": "NSFNoteOpen", "status": 515}])");
  const ConsoleEnd end = Export({L"--resume"});
  EXPECT_EQ(FilesIn("design"), (Lines{"design/00000202.dxl"})) << end.output;
  EXPECT_NE(end.code, 0u);
}

TEST_F(ExportEdgesTest, AWorkerThatCannotStartIsOneRestart) {
  run_.AddDatabase(database_, DocumentsJson(3));
  run_.SetFaults(R"([{"entry": "DXLExportNote", "note": "00000902", "wait": 6000,
                      "action": "accessViolation"}])");
  const auto process = StartExport({L"--json"});
  EXPECT_TRUE(AwaitCondition([this] { return Holds(ReadIfThere(L"unidindex.txt"), "00000902,"); }));
  run_.ChangeFaults(R"([{"entry": "NotesInitExtended", "status": 422}])");
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_TRUE(Holds(Log(), "Maximum retries exceeded")) << Log();
  EXPECT_EQ(EventsOf(end.output, "restart").size(), 1u);
  EXPECT_EQ(EventsOf(end.output, "lost").size(), 1u);
}

TEST_F(ExportEdgesTest, APlainExportWhoseFirstNoteIsLostHasBegun) {
  run_.AddDatabase(database_, R"({"notes": [{"id": "00000202", "class": "form"},
                                            {"id": "00000206", "class": "form"}]})");
  run_.SetFaults(R"([{"entry": "DXLExportNote", "note": "00000202", "status": 585},
                     {"entry": "DXLExportNote", "note": "00000206", "status": 6967}])");
  EXPECT_EQ(Export({L"--design-only"}).code, 5u);
}

TEST_F(ExportEdgesTest, EveryRunBeginsWithAStartAndEndsWithAnEnd) {
  WriteBytes(out_, "no folder");
  const std::vector<Json> events = EventsIn(Export({L"--json"}).output);
  ASSERT_GE(events.size(), 2u);
  EXPECT_EQ(events.front().at("kind"), "start");
  EXPECT_EQ(events.back().at("kind"), "end");
  EXPECT_EQ(events.back().at("exitCode"), 2);
}

}  // namespace
}  // namespace larkspan::console
