// Notes that crash the library: each costs itself and no other note.
#include "tests/support/FileBytes.h"
#include "tests/support/LibraryThrows.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

constexpr char kAccessViolationInTheFirstNote[] =
    R"({"entry": "DXLExportNote", "note": "00000902", "action": "accessViolation"})";

Lines IncompleteRuns(const Lines& noteIds) {
  Lines lines;
  for (const std::string& id : noteIds) {
    lines.push_back("#WARNING# - Major: Incomplete run detected for note id " + id);
  }
  return lines;
}

struct CrashedNotes {
  const char* name;
  const wchar_t* database;
  Lines lost;
  Lines exported;
};

class CrashedNotesSystemTest : public SystemTest,
                               public ::testing::WithParamInterface<CrashedNotes> {};

TEST_P(CrashedNotesSystemTest, AreNamedAndAreAllThatIsLost) {
  const ProgramResult result = run_.Export(GetParam().database, {L"-archive"});
  const int lost = static_cast<int>(GetParam().lost.size());
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(LogLines(), IncompleteRuns(GetParam().lost));
  EXPECT_EQ(FilesIn("data"), GetParam().exported);
  EXPECT_EQ(OutputLines(L"unidindex.txt").size(), 5u);
  EXPECT_EQ(Tail(AuditLines(), 12), ClosingLines({.listed = 5, .data = 5 - lost, .failed = lost}));
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
}

INSTANTIATE_TEST_SUITE_P(
    EveryPlace, CrashedNotesSystemTest,
    ::testing::Values(CrashedNotes{"First",
                                   L"crash-first.nsf",
                                   {"00000902"},
                                   {"data/00000906.dxl", "data/0000090A.dxl", "data/0000090E.dxl",
                                    "data/00000912.dxl"}},
                      CrashedNotes{"Middle",
                                   L"crash-middle.nsf",
                                   {"0000090A"},
                                   {"data/00000902.dxl", "data/00000906.dxl", "data/0000090E.dxl",
                                    "data/00000912.dxl"}},
                      CrashedNotes{"Last",
                                   L"crash-last.nsf",
                                   {"00000912"},
                                   {"data/00000902.dxl", "data/00000906.dxl", "data/0000090A.dxl",
                                    "data/0000090E.dxl"}},
                      CrashedNotes{"TwoInARow",
                                   L"crash-two.nsf",
                                   {"00000906", "0000090A"},
                                   {"data/00000902.dxl", "data/0000090E.dxl", "data/00000912.dxl"}},
                      CrashedNotes{"All",
                                   L"crash-all.nsf",
                                   {"00000902", "00000906", "0000090A", "0000090E", "00000912"},
                                   {}}),
    [](const auto& test) { return std::string(test.param.name); });

class CrashResumeSystemTest : public SystemTest {
 protected:
  // Exports a database of so many documents in which these faults strike.
  ProgramResult Export(int documents, const std::string& faults,
                       const std::vector<std::wstring>& arguments) {
    run_.AddDatabase(L"x.nsf", DocumentsJson(documents, FaultsMember(faults)));
    return run_.Export(L"x.nsf", arguments);
  }
};

TEST_F(CrashResumeSystemTest, TheWholeStoryOfACrashStandsInTheLog) {
  Export(2, kAccessViolationInTheFirstNote, {L"-archive", L"-debug"});
  EXPECT_EQ(LogLines(), (Lines{"#DEBUG# - Top of Archive Main Loop with nid 00000000",
                               "#DEBUG# - Invoking child process",
                               "#DEBUG# - Exiting via SEH finally",
                               "#DEBUG# - Trying to NotesTerm",
                               "#DEBUG# - NotesTermed",
                               "#DEBUG# - Child process returned non-zero value (3221225477)",
                               "#DEBUG# - Child process complete",
                               "#DEBUG# - Checking for marker file",
                               "#DEBUG# - ReadMarkerFile returned 00000902",
                               "#DEBUG# - Top of Archive Main Loop with nid 00000902",
                               "#WARNING# - Major: Incomplete run detected for note id 00000902",
                               "#DEBUG# - Invoking child process",
                               "#DEBUG# - Trying to NotesTerm",
                               "#DEBUG# - NotesTermed",
                               "#DEBUG# - Exiting via SEH finally",
                               "#DEBUG# - Child process exited cleanly",
                               "#DEBUG# - Child process complete",
                               "#DEBUG# - Checking for marker file",
                               "#DEBUG# - No marker file found",
                               "#DEBUG# - End of Archive Main Loop",
                               "#DEBUG# - CountInputDocuments succeeded (2)"}));
}

TEST_F(CrashResumeSystemTest, EveryWorkerThatDoesNotCrashGivesEverythingBack) {
  run_.Export(L"crash-two.nsf", {L"-archive"});
  ASSERT_EQ(run_.LedgerLines().size(), 3u);
  const Lines heldInTheCrash = {"database 1", "exporter 5", "idTable 1", "note 1"};
  EXPECT_EQ(run_.LeftOpen(0), heldInTheCrash);
  EXPECT_EQ(run_.LeftOpen(1), heldInTheCrash);
  EXPECT_EQ(run_.LeftOpen(2), Lines());
}

TEST_F(CrashResumeSystemTest, TheNextWorkerSendsItsProgressFromTheNextNoteOn) {
  const ProgramResult result = Export(2, kAccessViolationInTheFirstNote, {L"-archive"});
  EXPECT_EQ(result.standardOutput,
            "PROGRESS: Opening 'x.nsf' on ''\r\nPROGRESS: Exporting database properties\r\n"
            "PROGRESS: VIEWCOUNT: 0\r\n"
            "PROGRESS: Scanning documents\r\nPROGRESS: DOCCOUNT: 2\r\n"
            "PROGRESS: DOCUMENT: 00000902\r\nPROGRESS: Opening 'x.nsf' on ''\r\n"
            "PROGRESS: DOCUMENT: 00000906\r\n");
}

TEST_F(CrashResumeSystemTest, ACrashAfterSomeOutputLeavesNoPartialFileUnderAFinalName) {
  Export(2,
         R"({"entry": "DXLExportNote", "note": "00000902", "chunks": 1,
             "action": "accessViolation"})",
         {L"-archive", L"-l", L"0"});
  EXPECT_EQ(FilesIn("data"), Lines());
  EXPECT_FALSE(run_.OutputFile(L"temp.tmp").empty());
  EXPECT_EQ(run_.OutputFile(L"marker.txt"), "00000902\r\n");
}

TEST_F(CrashResumeSystemTest, AfterACrashOnTheLastNoteNoTemporaryFileIsLeft) {
  Export(2,
         R"({"entry": "DXLExportNote", "note": "00000906", "chunks": 1,
             "action": "accessViolation"})",
         {L"-archive"});
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
}

TEST_F(CrashResumeSystemTest, TheNextWorkerDeletesTheTemporaryFileOfTheCrashedOne) {
  Export(2,
         R"({"entry": "DXLExportNote", "note": "00000902", "chunks": 1,
             "action": "accessViolation"})",
         {L"-archive", L"-debug"});
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000906.dxl"});
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
  EXPECT_EQ(run_.Log().find("Retrying"), std::string::npos);
  const std::string exported = run_.OutputFile(L"data\\00000906.dxl");
  EXPECT_TRUE(exported.starts_with("<?xml")) << exported;
  EXPECT_TRUE(exported.ends_with("</document>\r\n")) << exported;
  EXPECT_EQ(exported.find("<?xml", 1), std::string::npos) << exported;
}

TEST_F(CrashResumeSystemTest, ACrashBeforeTheFirstNoteEndsTheRun) {
  run_.SetFaults(R"([{"entry": "NSFDbOpen", "action": "accessViolation"}])");
  EXPECT_EQ(run_.Export(L"sample.nsf", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Child process returned 3221225477 outside a note; the "
                              "export may be incomplete"});
  EXPECT_EQ(AuditLines(),
            Join({{"Archive started at: *", "Set user to: CN=Larkspan Tester/O=Example"},
                  ClosingLines({})}));
  EXPECT_EQ(run_.LedgerLines().size(), 1u);
}

TEST_F(CrashResumeSystemTest, AnExitBeforeTheFirstNoteIsToldWhateverItsCode) {
  for (const std::string code : {"0", "5"}) {
    run_.SetFaults(R"([{"entry": "IDCreateTable", "action": "exit", "code": )" + code + "}]");
    Export(1, "", {L"-archive"});
    EXPECT_EQ(Tail(LogLines(), 1), Lines{"#ERROR# - Child process returned " + code +
                                         " outside a note; the export may be incomplete"});
  }
}

TEST_F(CrashResumeSystemTest, AnEndOfItsOwnIsNotTold) {
  run_.SetFaults(R"([{"entry": "IDCreateTable", "status": "0x0102"}])");
  Export(1, "", {L"-archive"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error retrieving notes (Notes error 258)"});
}

TEST_F(CrashResumeSystemTest, ACrashInTheEndOfTheRuntimeLosesNothing) {
  run_.SetFaults(R"([{"entry": "NotesTerm", "action": "accessViolation"}])");
  Export(2, "", {L"-archive", L"-debug"});
  EXPECT_EQ(FilesIn("data").size(), 2u);
  EXPECT_EQ(Tail(AuditLines(), 11), ClosingLines({.listed = 2, .data = 2}));
  const Lines log = LogLines();
  EXPECT_EQ(CountLines(log, "#DEBUG# - Trying to NotesTerm"), 1);
  EXPECT_EQ(CountLines(log, "#DEBUG# - NotesTermed"), 0);
  EXPECT_EQ(CountLines(log, "#DEBUG# - Exiting via SEH finally"), 1);
  EXPECT_EQ(CountLines(log, "#DEBUG# - Invoking child process"), 1);
}

TEST_F(CrashResumeSystemTest, AClosingThatHangsAfterACrashDoesNotKeepTheWorkerAlive) {
  run_.SetFaults(R"([{"entry": "NotesTerm", "action": "hang"}])");
  const ProgramResult result =
      Export(1, kAccessViolationInTheFirstNote, {L"-archive", L"-debug", L"-l", L"0"});
  EXPECT_EQ(result.exitCode, 0xC0000005u);
  EXPECT_EQ(run_.OutputFile(L"marker.txt"), "00000902\r\n");
  EXPECT_EQ(LogLines(),
            (Lines{"#DEBUG# - Exiting via SEH finally", "#DEBUG# - Trying to NotesTerm"}));
}

TEST_F(CrashResumeSystemTest, AClosingThatHangsAfterTheEndOfTheThreadDoesNotKeepTheWorkerAlive) {
  run_.SetFaults(R"([{"entry": "NotesTerm", "action": "hang"}])");
  const ProgramResult result =
      Export(1, R"({"entry": "DXLExportNote", "note": "00000902", "action": "endThread"})",
             {L"-archive", L"-debug", L"-l", L"0"});
  EXPECT_EQ(result.exitCode, 3u);
  EXPECT_EQ(LogLines(),
            (Lines{"#DEBUG# - Exiting via SEH finally", "#DEBUG# - Trying to NotesTerm"}));
}

TEST_F(CrashResumeSystemTest, AThreadThatEndsInTheClosingEndsTheWorker) {
  run_.SetFaults(R"([{"entry": "NotesTerm", "action": "endThread"}])");
  const ProgramResult result = Export(1, "", {L"-archive", L"-debug", L"-l", L"0"});
  EXPECT_EQ(result.exitCode, 3u);
  EXPECT_EQ(CountLines(LogLines(), "#DEBUG# - Trying to NotesTerm"), 1);
  EXPECT_EQ(FilesIn("data").size(), 1u);
}

TEST_F(CrashResumeSystemTest, AClosingThatCrashesAfterACrashIsNotRunAgain) {
  run_.SetFaults(R"([{"entry": "NotesTerm", "action": "accessViolation"}])");
  const ProgramResult result =
      Export(1, kAccessViolationInTheFirstNote, {L"-archive", L"-debug", L"-l", L"0"});
  EXPECT_EQ(result.exitCode, 0xC0000005u);
  EXPECT_EQ(LogLines(),
            (Lines{"#DEBUG# - Exiting via SEH finally", "#DEBUG# - Trying to NotesTerm"}));
}

// The thread crashes while the note is exported, and the end of the runtime takes as long as the
// next notes would.
constexpr char kThreadCrashesInTheFirstNote[] =
    R"({"entry": "DXLExportNote", "note": "00000902", "action": "crashThread"},
       {"entry": "DXLExportNote", "note": "00000902", "wait": 3000},
       {"entry": "NotesTerm", "call": 1, "wait": 6000})";

TEST_F(CrashResumeSystemTest, ACrashOfAThreadOfTheLibraryStopsTheWorkerAtItsNote) {
  const ProgramResult result =
      Export(3, kThreadCrashesInTheFirstNote, {L"-archive", L"-debug", L"-l", L"0"});
  EXPECT_EQ(result.exitCode, 0xC0000005u);
  EXPECT_EQ(run_.OutputFile(L"marker.txt"), "00000902\r\n");
  EXPECT_EQ(FilesIn("data"), Lines());
  EXPECT_EQ(LogLines(), (Lines{"#DEBUG# - Exiting via SEH finally", "#DEBUG# - Trying to NotesTerm",
                               "#DEBUG# - NotesTermed"}));
}

TEST_F(CrashResumeSystemTest, ACrashOfAThreadOfTheLibraryCostsOneNote) {
  Export(3, kThreadCrashesInTheFirstNote, {L"-archive"});
  EXPECT_EQ(LogLines(), IncompleteRuns({"00000902"}));
  EXPECT_EQ(FilesIn("data"), (Lines{"data/00000906.dxl", "data/0000090A.dxl"}));
  EXPECT_EQ(Tail(AuditLines(), 12), ClosingLines({.listed = 3, .data = 2, .failed = 1}));
}

// As a throw of another compiler's code is.
constexpr char kForeignException[] = R"("action": "exception", "code": "0xE06D7363")";

TEST_F(CrashResumeSystemTest, AnExceptionOfAnotherCompilerInANoteEndsTheWorkerLikeOneOfThisOne) {
  const ProgramResult result = Export(
      2,
      std::string(R"({"entry": "DXLExportNote", "note": "00000902", )") + kForeignException + "}",
      {L"-archive", L"-debug", L"-l", L"0"});
  EXPECT_EQ(result.exitCode, 0xE06D7363u);
  EXPECT_EQ(LogLines(),
            (Lines{"#DEBUG# - Exiting via catch-all handler", "#DEBUG# - Trying to NotesTerm",
                   "#DEBUG# - NotesTermed", "#DEBUG# - Exiting via SEH finally"}));
  EXPECT_EQ(run_.OutputFile(L"marker.txt"), "00000902\r\n");
  EXPECT_EQ(run_.LedgerLines().size(), 1u);
}

TEST_F(CrashResumeSystemTest, AnExceptionOfAnotherCompilerOutsideANoteIsAnError) {
  Export(1, std::string(R"({"entry": "IDCreateTable", )") + kForeignException + "}",
         {L"-archive", L"-l", L"0"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - The export was ended by an exception"});
  EXPECT_EQ(run_.LedgerLines().size(), 1u);
}

TEST_F(CrashResumeSystemTest, AnExceptionOfAnotherCompilerAtTheEndOfTheRuntimeIsAWarning) {
  Export(1, std::string(R"({"entry": "NotesTerm", )") + kForeignException + "}",
         {L"-archive", L"-l", L"0"});
  EXPECT_EQ(LogLines(),
            Lines{"#WARNING# - The end of the Notes runtime was ended by an exception"});
  EXPECT_EQ(FilesIn("data").size(), 1u);
}

// The worker has told it, and the supervisor does not tell it once more.
TEST_F(CrashResumeSystemTest, AnExceptionOfAnotherCompilerAtTheEndOfTheRuntimeIsToldOnce) {
  Export(1, std::string(R"({"entry": "NotesTerm", )") + kForeignException + "}", {L"-archive"});
  EXPECT_EQ(LogLines(),
            Lines{"#WARNING# - The end of the Notes runtime was ended by an exception"});
  EXPECT_EQ(Tail(AuditLines(), 11), ClosingLines({.listed = 1, .data = 1}));
}

TEST_F(CrashResumeSystemTest, AnExceptionOfAnotherCompilerBeforeTheNotesIsToldOnce) {
  Export(1, std::string(R"({"entry": "IDCreateTable", )") + kForeignException + "}", {L"-archive"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - The export was ended by an exception"});
}

TEST_F(CrashResumeSystemTest, AFilterOfTheLibraryTakesNoClosingAway) {
  run_.AddConfiguration("StandinInstallsFilter=1");
  const ProgramResult result =
      Export(1, kAccessViolationInTheFirstNote, {L"-archive", L"-debug", L"-l", L"0"});
  EXPECT_EQ(result.exitCode, 0xC0000005u);
  EXPECT_EQ(LogLines(), (Lines{"#DEBUG# - Exiting via SEH finally", "#DEBUG# - Trying to NotesTerm",
                               "#DEBUG# - NotesTermed"}));
}

TEST_F(CrashResumeSystemTest, AnExceptionOutOfTheLibraryEndsTheWorkerThroughTheCatchAll) {
  if (!kLibraryThrowsIntoProgram) GTEST_SKIP() << "the library ends the process itself";
  Export(2, R"({"entry": "DXLExportNote", "note": "00000902", "action": "throw"})",
         {L"-archive", L"-debug", L"-l", L"0"});
  EXPECT_EQ(LogLines(),
            (Lines{"#DEBUG# - Exiting via catch-all handler", "#DEBUG# - Trying to NotesTerm",
                   "#DEBUG# - NotesTermed", "#DEBUG# - Exiting via SEH finally"}));
  EXPECT_EQ(run_.OutputFile(L"marker.txt"), "00000902\r\n");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

struct Ending {
  const char* name;
  const char* fault;
  bool isCrash;  // Goes through the closing; the library's own exit leaves no time for it.
};

// Every way in which the library can end a process, on the first note of two.
class EndingSystemTest : public SystemTest, public ::testing::WithParamInterface<Ending> {
 protected:
  ProgramResult Export(const std::vector<std::wstring>& arguments) {
    run_.AddDatabase(
        L"x.nsf",
        DocumentsJson(2, FaultsMember(R"({"entry": "DXLExportNote", "note": "00000902", )" +
                                      std::string(GetParam().fault) + "}")));
    return run_.Export(L"x.nsf", arguments);
  }
};

TEST_P(EndingSystemTest, LeavesTheMarkerAndRunsTheClosingOnceAtMost) {
  Export({L"-archive", L"-debug", L"-l", L"0"});
  EXPECT_EQ(run_.OutputFile(L"marker.txt"), "00000902\r\n");
  const int closings = CountLines(LogLines(), "#DEBUG# - Exiting via SEH finally");
  if (GetParam().isCrash) {
    EXPECT_EQ(closings, 1);
  } else {
    EXPECT_LE(closings, 1);
  }
  EXPECT_LE(CountLines(LogLines(), "#DEBUG# - Trying to NotesTerm"), 1);
}

TEST_P(EndingSystemTest, IsResumedAfterItsNote) {
  Export({L"-archive"});
  EXPECT_EQ(LogLines(), IncompleteRuns({"00000902"}));
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000906.dxl"});
  EXPECT_EQ(Tail(AuditLines(), 12), ClosingLines({.listed = 2, .data = 1, .failed = 1}));
}

INSTANTIATE_TEST_SUITE_P(
    EveryWay, EndingSystemTest,
    ::testing::Values(Ending{"AccessViolation", R"("action": "accessViolation")", true},
                      Ending{"StackOverflow", R"("action": "stackOverflow")", true},
                      Ending{"StackOverflowAfterAChunk",
                             R"("chunks": 1, "action": "stackOverflow")", true},
                      Ending{"EndOfTheThread", R"("action": "endThread")", true},
                      Ending{"Exit", R"("action": "exit", "code": 3)", false},
                      Ending{"ExitWithZero", R"("action": "exit", "code": 0)", false},
                      Ending{"Abort", R"("action": "abort")", false},
                      Ending{"Throw", R"("action": "throw")", kLibraryThrowsIntoProgram},
                      Ending{"Exception", R"("action": "exception", "code": "0xC0000094")", true},
                      Ending{"ForeignException", kForeignException, true}),
    [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace larkspan::testing
