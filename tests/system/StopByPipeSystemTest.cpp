// A calling program that stops a run through its pipe.
#include <stdexcept>
#include <string>

#include "tests/support/CommandInterpreter.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class StopByPipeSystemTest : public SystemTest {
 protected:
  StopByPipeSystemTest() { run_.AddDatabase(L"x.nsf", DocumentsJson(4)); }

  std::wstring CommandLine(const std::wstring& pipe, bool archive = true) const {
    std::vector<std::wstring> arguments = {L"-debug", L"-pipe", pipe};
    if (archive) arguments.push_back(L"-archive");
    return run_.CommandLine(L"x.nsf", arguments);
  }

  // Gives the monitor time to see the pipe's end while the second note is exported.
  void SlowDownTheSecondNote() {
    run_.SetFaults(R"([{"entry": "DXLExportNote", "call": 2, "wait": 5000}])");
  }

  void ExpectStoppedAfterTheSecondNote(const ProgramResult& result) {
    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_TRUE(result.standardOutput.ends_with("PROGRESS: DOCUMENT: 00000906\r\n"))
        << result.standardOutput;
    EXPECT_EQ(FilesIn("data"), (Lines{"data/00000902.dxl", "data/00000906.dxl"}));
    EXPECT_EQ(OutputLines(L"idtable.txt").size(), 4u);
    EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
    EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
    EXPECT_EQ(run_.LedgerFault(1), "");
  }

  // How the supervisor's part of the log ends when it saw no marker file.
  void ExpectTheRunEndedByTheSupervisor(const Lines& log) {
    EXPECT_EQ(CountLines(log, "#DEBUG# - MonitorPipe: Read completed cleanly"), 1);
    EXPECT_EQ(CountLines(log, "#DEBUG# - Invoking child process"), 1);
    EXPECT_EQ(CountLines(log, "#DEBUG# - No marker file found"), 1);
    EXPECT_EQ(log.back(), "#WARNING# - Document count mismatch: expected 4 but only found 2");
  }

  void ExpectEverythingExported(const ProgramResult& result) {
    EXPECT_EQ(result.exitCode, 0u);
    EXPECT_EQ(OutputLines(L"idtable.txt").size(), 4u);
    EXPECT_EQ(FilesIn("data").size(), 4u);
    EXPECT_FALSE(Contains(LogLines(), "#DEBUG# - MonitorPipe: Read completed cleanly"));
    EXPECT_EQ(run_.LedgerFault(1), "");
  }
};

TEST_F(StopByPipeSystemTest, ClosingThePipeStopsTheRunBeforeTheNextNote) {
  SlowDownTheSecondNote();
  StopPipe pipe;
  Program program(run_.Executable(), CommandLine(pipe.HandleText()));
  pipe.CloseReadEnd();
  ASSERT_TRUE(program.ReadUntil("PROGRESS: DOCUMENT: ", 2));
  pipe.Close();
  ExpectStoppedAfterTheSecondNote(program.WaitForEnd());
  ExpectTheRunEndedByTheSupervisor(LogLines());
}

TEST_F(StopByPipeSystemTest, WritingIntoThePipeStopsTheRunBeforeTheNextNote) {
  SlowDownTheSecondNote();
  StopPipe pipe;
  Program program(run_.Executable(), CommandLine(pipe.HandleText()));
  ASSERT_TRUE(program.ReadUntil("PROGRESS: DOCUMENT: ", 2));
  pipe.Write("stop, and more than ten bytes of it");
  ExpectStoppedAfterTheSecondNote(program.WaitForEnd());
}

TEST_F(StopByPipeSystemTest, AStoppedRunHasAnAuditReportWithoutASizeAfterTheArchive) {
  SlowDownTheSecondNote();
  StopPipe pipe;
  Program program(run_.Executable(), CommandLine(pipe.HandleText()));
  ASSERT_TRUE(program.ReadUntil("PROGRESS: DOCUMENT: ", 2));
  pipe.Close();
  program.WaitForEnd();
  EXPECT_EQ(AuditLines(),
            Join({{"Archive started at: *", "Set user to: CN=Larkspan Tester/O=Example",
                   "Archive database server: ", "Archive database path  : x.nsf",
                   "Archive without full access admin", "Database size before archive: 65536"},
                  ClosingLines({.listed = 4, .data = 2})}));
}

TEST_F(StopByPipeSystemTest, APipeThatIsClosedFromTheBeginningLetsNoNoteBeExported) {
  run_.SetFaults(R"([{"entry": "NSFSearchExtended3", "wait": 5000}])");
  StopPipe pipe;
  pipe.Close();
  const ProgramResult result =
      Program(run_.Executable(), CommandLine(pipe.HandleText())).WaitForEnd();
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(result.standardOutput.find("DOCUMENT"), std::string::npos) << result.standardOutput;
  EXPECT_EQ(FilesIn("data"), Lines());
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(StopByPipeSystemTest, AHandleThatNamesNothingStopsTheRunToo) {
  run_.SetFaults(R"([{"entry": "NSFSearchExtended3", "wait": 5000}])");
  run_.Export(L"x.nsf", {L"-archive", L"-debug", L"-pipe", L"123456788"});
  EXPECT_TRUE(Contains(LogLines(), "#DEBUG# - MonitorPipe: Read completed cleanly"));
  EXPECT_EQ(FilesIn("data"), Lines());
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(StopByPipeSystemTest, AHandleThatIsNoNumberIsNotWatched) {
  ExpectEverythingExported(run_.Export(L"x.nsf", {L"-archive", L"-debug", L"-pipe", L"no number"}));
}

TEST_F(StopByPipeSystemTest, APipeThatStaysOpenDoesNotStopTheRunOrKeepItAlive) {
  StopPipe pipe;
  ExpectEverythingExported(Program(run_.Executable(), CommandLine(pipe.HandleText())).WaitForEnd());
}

TEST_F(StopByPipeSystemTest, OutsideAnArchiveThePipeIsNotWatched) {
  run_.SetFaults(R"([{"entry": "NSFSearchExtended3", "wait": 1500}])");
  StopPipe pipe;
  pipe.Close();
  const ProgramResult result =
      Program(run_.Executable(), CommandLine(pipe.HandleText(), false)).WaitForEnd();
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_TRUE(Contains(AuditLines(), "Database size after archive : 65536"));
  EXPECT_FALSE(Contains(LogLines(), "#DEBUG# - MonitorPipe: Read completed cleanly"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

// A process that has not begun to run can be ended like one that runs.
UniqueSystemHandle StartSuspended(const std::wstring& executable) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  std::wstring line = executable;
  if (!CreateProcessW(executable.c_str(), line.data(), nullptr, nullptr, FALSE, CREATE_SUSPENDED,
                      nullptr, nullptr, &startup, &process)) {
    throw std::runtime_error("no process");
  }
  CloseHandle(process.hThread);
  return UniqueSystemHandle(process.hProcess);
}

// Nobody but the calling program holds the end of the pipe that is written to.
TEST_F(StopByPipeSystemTest, ACallingProgramThatIsEndedFromOutsideStopsTheRun) {
  SlowDownTheSecondNote();
  StopPipe pipe;
  const UniqueSystemHandle caller = StartSuspended(CommandInterpreter());
  pipe.GiveWriteEndTo(caller.get());
  Program program(run_.Executable(), CommandLine(pipe.HandleText()));
  ASSERT_TRUE(program.ReadUntil("PROGRESS: DOCUMENT: ", 2));
  TerminateProcess(caller.get(), 1);
  ExpectStoppedAfterTheSecondNote(program.WaitForEnd());
}

}  // namespace
}  // namespace larkspan::testing
