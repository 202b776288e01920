// Workers that hang, and libraries that die among the views.
#include "tests/console/system/ExportTest.h"

namespace larkspan::console {
namespace {

using testing::DocumentsJson;
using testing::FaultsMember;

class ExportStallTest : public ExportTest {
 protected:
  void AddNotes(int count, const std::string& faults) {
    run_.AddDatabase(database_, DocumentsJson(count, FaultsMember(faults)));
  }

  // Less than a short stall, and four of it are more.
  static std::string WaitBehindChunk(int chunk) {
    return R"({"entry": "DXLExportNote", "note": "00000906", "wait": 2500, "chunks": )" +
           std::to_string(chunk) + "}";
  }

  // The sample, whose views are exported in the order 0000012E, 00000132 and so on.
  void UseSampleWith(const std::string& faults) {
    database_ = L"sample.nsf";
    run_.SetFaults("[" + faults + "]");
  }

  void ExpectNotesWithoutTheViewsBehind(const ConsoleEnd& end, const std::string& cause) {
    EXPECT_EQ(end.code, 3u) << end.output;
    EXPECT_EQ(FilesIn("views"), (Lines{"views/0000012E.xml", "views/00000132.xml"}));
    EXPECT_EQ(FilesIn("data").size(), 29u);
    EXPECT_TRUE(Exists(out_ + L"\\acl.dxl"));
    EXPECT_TRUE(Exists(out_ + L"\\db.dxl"));
    EXPECT_FALSE(Exists(out_ + L"\\acl.dxl.first"));
    EXPECT_FALSE(Exists(out_ + L"\\db.dxl.first"));
    EXPECT_FALSE(Holds(Log(), "Error exporting ACL")) << Log();
    const Json lost = Outcome().at("lostViews");
    ASSERT_EQ(lost.size(), 12u);
    EXPECT_EQ(lost[0].at("id"), "00000136");
    EXPECT_EQ(lost[0].at("stage"), cause);
    EXPECT_EQ(lost[1].at("stage"), "views");
    EXPECT_EQ(Outcome().at("account").at("losses").size(), 12u);
  }
};

TEST_F(ExportStallTest, AHungNoteIsEndedAndTheRunGoesOnBehindIt) {
  AddNotes(4, R"({"entry": "DXLExportNote", "note": "00000906", "action": "hang"})");
  const ConsoleEnd end = Export({L"--stall", kShortStall, L"--json"});
  EXPECT_EQ(end.code, 3u) << end.output;
  EXPECT_EQ(FilesIn("data"),
            (Lines{"data/00000902.dxl", "data/0000090A.dxl", "data/0000090E.dxl"}));
  const std::vector<Json> restarts = EventsOf(end.output, "restart");
  ASSERT_EQ(restarts.size(), 1u);
  EXPECT_EQ(restarts[0].at("cause"), "stall");
  EXPECT_EQ(restarts[0].at("note"), "00000906");
  EXPECT_EQ(Outcome().at("restarts").at(0).at("cause"), "stall");
  const Json losses = Outcome().at("account").at("losses");
  ASSERT_EQ(losses.size(), 1u);
  EXPECT_EQ(losses[0].at("stage"), "stall");
  EXPECT_EQ(Outcome().count("stop"), 0u);
}

TEST_F(ExportStallTest, WithoutALimitAHangIsWaitedFor) {
  AddNotes(2, R"({"entry": "DXLExportNote", "note": "00000906", "wait": 4000})");
  EXPECT_EQ(Export().code, 0u);
  EXPECT_TRUE(Outcome().at("restarts").empty());
}

TEST_F(ExportStallTest, ANoteThatGoesOnWritingDoesNotHang) {
  std::string faults;
  for (int chunk = 1; chunk <= 4; ++chunk)
    faults += (chunk == 1 ? "" : ", ") + WaitBehindChunk(chunk);
  run_.AddDatabase(database_, DocumentsJson(2, R"("chunkBytes": 100, )" + FaultsMember(faults)));
  EXPECT_EQ(Export({L"--stall", kShortStall}).code, 0u);
  EXPECT_TRUE(Outcome().at("restarts").empty());
}

TEST_F(ExportStallTest, ACrashIsNoStall) {
  AddNotes(3, R"({"entry": "DXLExportNote", "note": "00000902", "action": "hang"},
                 {"entry": "DXLExportNote", "note": "00000906", "action": "accessViolation"})");
  const ConsoleEnd end = Export({L"--stall", kShortStall});
  EXPECT_EQ(end.code, 3u);
  const Json losses = Outcome().at("account").at("losses");
  ASSERT_EQ(losses.size(), 2u);
  EXPECT_EQ(losses[0].at("stage"), "stall");
  EXPECT_EQ(losses[1].at("stage"), "crash");
}

TEST_F(ExportStallTest, AHangAmongTheViewsIsTakenUpWithoutThem) {
  UseSampleWith(R"({"entry": "NIFOpenCollection", "note": "00000136", "action": "hang"})");
  const ConsoleEnd end = Export({L"--stall", kShortStall});
  ExpectNotesWithoutTheViewsBehind(end, "stall");
  EXPECT_TRUE(Holds(end.output, "without views")) << end.output;
}

TEST_F(ExportStallTest, ACrashAmongTheViewsIsTakenUpWithoutThem) {
  UseSampleWith(
      R"({"entry": "NIFOpenCollection", "note": "00000136", "action": "accessViolation"})");
  const ConsoleEnd end = Export({L"--json"});
  ExpectNotesWithoutTheViewsBehind(end, "crash");
  EXPECT_EQ(EventsOf(end.output, "retry").size(), 1u);
  EXPECT_EQ(EventsOf(end.output, "lost").size(), 12u);
  EXPECT_EQ(Outcome().at("restarts").size(), 1u);
  EXPECT_EQ(Outcome().at("restarts").at(0).count("note"), 0u);
}

// The worker dies when it is done with the view.
TEST_F(ExportStallTest, AViewThatLiesThereIsNotLost) {
  UseSampleWith(
      R"({"entry": "NIFPurgeCollection", "note": "00000132", "action": "accessViolation"})");
  const ConsoleEnd end = Export();
  EXPECT_EQ(end.code, 3u) << end.output;
  ASSERT_TRUE(Exists(out_ + L"\\views\\00000132.xml"));
  EXPECT_FALSE(Holds(Outcome().at("lostViews").dump(), "00000132"));
}

TEST_F(ExportStallTest, ACrashAmongTheViewsOfARunThatIsStoppedIsAStop) {
  UseSampleWith(R"({"entry": "NIFOpenCollection", "note": "00000136", "wait": 6000,
                    "action": "accessViolation"})");
  const auto process = StartExport({L"--stop-on-stdin-end"});
  AwaitFile(out_ + L"\\views\\00000132.xml");
  process->EndInput();
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 4u) << end.output;
  EXPECT_FALSE(Holds(end.output, "without views"));
}

TEST_F(ExportStallTest, AHangBeforeTheNotesCouldNotRunAndNamesThePhase) {
  const std::pair<const char*, const char*> rows[] = {
      {"NotesInitExtended", "starting the Notes runtime"},
      {"NSFDbOpen", "opening the database"},
      {"DXLExportACL", "exporting the database's properties"},
      {"NSFSearchExtended3", "listing the notes"},
  };
  run_.AddDatabase(database_, DocumentsJson(1));
  run_.SetFaults("[]");
  int number = 0;
  for (const auto& [entry, deed] : rows) {
    run_.ChangeFaults("[{\"entry\": \"" + std::string(entry) + "\", \"action\": \"hang\"}]");
    out_ = run_.folder() + L"\\out " + std::to_wstring(++number);
    const ConsoleEnd end = Export({L"--no-views", L"--stall", kShortStall});
    EXPECT_EQ(end.code, 2u) << entry << end.output;
    EXPECT_TRUE(Holds(end.output, deed)) << entry << end.output;
    EXPECT_EQ(Outcome().at("stop").at("by"), "stall");
  }
}

TEST_F(ExportStallTest, AHangBetweenNotesIsIncomplete) {
  run_.AddDatabase(database_, DocumentsJson(3));
  run_.SetFaults(R"([{"entry": "IDScan", "call": 7, "action": "hang"}])");
  const ConsoleEnd end = Export({L"--stall", kShortStall});
  EXPECT_EQ(end.code, 5u) << end.output;
  EXPECT_TRUE(Holds(end.output, "outside a note")) << end.output;
}

TEST_F(ExportStallTest, AHangInTheEndOfTheRuntimeIsAWarning) {
  run_.AddDatabase(database_, DocumentsJson(2));
  run_.SetFaults(R"([{"entry": "NotesTerm", "action": "hang"}])");
  const ConsoleEnd end = Export({L"--stall", kShortStall});
  EXPECT_EQ(end.code, 0u) << end.output;
  EXPECT_EQ(FilesIn("data").size(), 2u);
  EXPECT_FALSE(Outcome().at("account").at("warnings").empty());
}

// Otherwise a hang would keep a stopped run for ever. A worker begins to listen for the request
// before it opens the database, and hears it by then.
TEST_F(ExportStallTest, CountsOnAfterARequestToStop) {
  AddNotes(4, R"({"entry": "DXLExportNote", "note": "00000906", "action": "hang"},
                 {"entry": "NSFDbOpen", "wait": 3000})");
  const auto process = StartExport({L"--stall", L"8s", L"--stop-on-stdin-end"});
  AwaitFile(out_ + L"\\data\\00000902.dxl");
  process->EndInput();
  const ConsoleEnd end = process->WaitForEnd();
  process->AwaitNothingLeft();
  EXPECT_EQ(end.code, 4u) << end.output;
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
}

TEST_F(ExportStallTest, AHangInAPlainExportIsEndedToo) {
  run_.AddDatabase(database_,
                   R"({"faults": [{"entry": "DXLExportNote", "note": "00000206", "action": "hang"}],
                       "notes": [{"id": "00000202", "class": "form"},
                                 {"id": "00000206", "class": "form"},
                                 {"id": "0000020A", "class": "form"}]})");
  const ConsoleEnd end = Export({L"--design-only", L"--stall", L"8s"});
  EXPECT_EQ(end.code, 3u) << end.output;
  EXPECT_TRUE(Exists(out_ + L"\\0000020A.dxl"));
  EXPECT_EQ(Outcome().at("account").at("losses").at(0).at("stage"), "stall");
}

}  // namespace
}  // namespace larkspan::console
