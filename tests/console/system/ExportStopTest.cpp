// Exports that are stopped: by the end of a pipe, by the end of the console program. The keys of a
// terminal are pressed in tests/console/terminal.
#include "tests/console/system/ExportTest.h"

namespace larkspan::console {
namespace {

using testing::DocumentsJson;
using testing::FaultsMember;

constexpr char kSecondNoteWaits[] =
    R"({"entry": "DXLExportNote", "note": "00000906", "wait": 6000})";
constexpr char kSecondNoteHangs[] =
    R"({"entry": "DXLExportNote", "note": "00000906", "action": "hang"})";

class ExportStopTest : public ExportTest {
 protected:
  std::unique_ptr<ConsoleProcess> StartToTheSecondNote(const char* fault, const Words& more = {}) {
    run_.AddDatabase(database_, DocumentsJson(4, FaultsMember(fault)));
    auto process = StartExport(more);
    AwaitFile(out_ + L"\\data\\00000902.dxl");
    return process;
  }

  void ExpectStoppedAfterTheSecondNote(ConsoleProcess& process, const std::string& by,
                                       const std::string& reason) {
    const ConsoleEnd end = process.WaitForEnd();
    process.AwaitNothingLeft();
    EXPECT_EQ(end.code, 4u) << end.output;
    EXPECT_EQ(FilesIn("data"), (Lines{"data/00000902.dxl", "data/00000906.dxl"}));
    const Json outcome = Outcome();
    EXPECT_EQ(outcome.at("exitCode"), 4);
    EXPECT_EQ(outcome.at("reason"), reason);
    EXPECT_EQ(outcome.at("stop").at("by"), by);
    EXPECT_EQ(outcome.at("progress").at("documentsDone"), 2);
    EXPECT_FALSE(Exists(out_ + L"\\marker.txt"));
  }
};

TEST_F(ExportStopTest, AStopBeforeTheNotesStopsTheRun) {
  run_.AddDatabase(
      database_,
      DocumentsJson(2, FaultsMember(R"({"entry": "NSFSearchExtended3", "wait": 6000})")));
  const auto process = StartExport({L"--stop-on-stdin-end"});
  AwaitFile(out_ + L"\\db.dxl");
  process->EndInput();
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 4u) << end.output;
  EXPECT_EQ(FilesIn("data"), Lines());
}

TEST_F(ExportStopTest, APlainExportIsEndedAtOnce) {
  run_.AddDatabase(database_,
                   R"({"faults": [{"entry": "DXLExportNote", "note": "00000206", "action": "hang"}],
                       "notes": [{"id": "00000202", "class": "form"},
                                 {"id": "00000206", "class": "form"}]})");
  const auto process = StartExport({L"--design-only", L"--stop-on-stdin-end"});
  AwaitFile(out_ + L"\\00000202.dxl");
  process->EndInput();
  const ConsoleEnd end = process->WaitForEnd();
  EXPECT_EQ(end.code, 4u) << end.output;
  process->AwaitNothingLeft();
  EXPECT_EQ(Outcome().at("stop").at("by"), "input");
}

TEST_F(ExportStopTest, AStopIsAnEvent) {
  const auto process = StartToTheSecondNote(kSecondNoteWaits, {L"--json", L"--stop-on-stdin-end"});
  process->EndInput();
  const ConsoleEnd end = process->WaitForEnd();
  const std::vector<Json> stops = EventsOf(end.output, "stop");
  ASSERT_EQ(stops.size(), 1u);
  EXPECT_EQ(stops[0].at("by"), "input");
}

TEST_F(ExportStopTest, TheEndOfStandardInputStopsWhenAskedFor) {
  const auto process = StartToTheSecondNote(kSecondNoteWaits, {L"--stop-on-stdin-end"});
  process->EndInput();
  ExpectStoppedAfterTheSecondNote(*process, "input", "stopped: standard input has come to its end");
}

TEST_F(ExportStopTest, TheEndOfStandardInputIsNothingOtherwise) {
  const auto process = StartToTheSecondNote(kSecondNoteWaits);
  process->EndInput();
  EXPECT_EQ(process->WaitForEnd().code, 0u);
}

TEST_F(ExportStopTest, LinesOnStandardInputStopNothing) {
  const auto process = StartToTheSecondNote(kSecondNoteWaits, {L"--stop-on-stdin-end"});
  process->Write("a line\nand another\n");
  EXPECT_EQ(process->WaitForEnd().code, 0u);
}

TEST_F(ExportStopTest, ABrokenStandardOutputStopsWhenAskedFor) {
  const auto process = StartToTheSecondNote(kSecondNoteWaits, {L"--stop-on-stdin-end", L"--json"});
  process->BreakOutput();
  ExpectStoppedAfterTheSecondNote(*process, "output", "stopped: nobody reads standard output");
}

TEST_F(ExportStopTest, ABrokenStandardOutputIsNothingOtherwise) {
  const auto process = StartToTheSecondNote(kSecondNoteWaits, {L"--json"});
  process->BreakOutput();
  EXPECT_EQ(process->WaitForEnd().code, 0u);
}

// Both of its pipes end together; the note that is at work is finished all the same.
TEST_F(ExportStopTest, ACallerThatEndsStopsAtTheNextNote) {
  const auto process = StartToTheSecondNote(kSecondNoteWaits, {L"--stop-on-stdin-end", L"--json"});
  process->BreakOutput();
  process->EndInput();
  EXPECT_EQ(process->WaitForEnd().code, 4u);
  EXPECT_EQ(FilesIn("data"), (Lines{"data/00000902.dxl", "data/00000906.dxl"}));
}

TEST_F(ExportStopTest, NothingIsLeftRunningWhenTheConsoleIsEndedByForce) {
  const auto process = StartToTheSecondNote(kSecondNoteHangs);
  EXPECT_EQ(process->Processes().size(), 3u);
  process->EndByForce();
  process->AwaitNothingLeft();
  EXPECT_EQ(Outcome().at("state"), "running");
}

TEST_F(ExportStopTest, TheOutcomeSaysRunningWhileARunGoesOn) {
  const auto process = StartToTheSecondNote(kSecondNoteHangs);
  const Json outcome = Outcome();
  EXPECT_EQ(outcome.at("state"), "running");
  EXPECT_EQ(outcome.at("ended"), "");
  EXPECT_EQ(outcome.count("exitCode"), 0u);
  EXPECT_NE(outcome.at("started"), "");
  process->EndByForce();
}

TEST_F(ExportStopTest, TheOutcomeIsThereBeforeTheDatabaseIsOpen) {
  run_.AddDatabase(database_, DocumentsJson(1));
  run_.SetFaults(R"([{"entry": "NotesInitExtended", "action": "hang"}])");
  const auto process = StartExport();
  AwaitOutcome(out_, [](const Json& outcome) { return outcome.at("state") == "running"; });
  process->EndByForce();
}

// Its worker would go on to the end of the list.
TEST_F(ExportStopTest, ASupervisorThatIsEndedTakesItsWorkerAlong) {
  const auto process = StartToTheSecondNote(kSecondNoteHangs);
  // As a task manager ends it, with the code that also a refused command line has.
  process->EndSupervisor(1);
  const ConsoleEnd end = process->WaitForEnd();
  process->AwaitNothingLeft();
  EXPECT_EQ(end.code, 5u) << end.output;
  EXPECT_TRUE(Holds(Outcome().at("reason"), "not accounted for")) << end.output;
}

TEST_F(ExportStopTest, ASecondConsoleInTheSameFolderCouldNotRun) {
  const auto process = StartToTheSecondNote(kSecondNoteHangs);
  for (const Words& more : {Words{}, Words{L"--resume"}}) {
    const ConsoleEnd second = Export(more);
    EXPECT_EQ(second.code, 2u);
    EXPECT_TRUE(Holds(second.output, "another larkspan-console is at work in the folder"))
        << second.output;
  }
  EXPECT_EQ(Outcome().at("state"), "running");
  process->EndByForce();
}

}  // namespace
}  // namespace larkspan::console
