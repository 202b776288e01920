// The program as a process: what it is started with, and what its workers inherit.
#include <windows.h>

#include <optional>

#include "tests/support/FileBytes.h"
#include "tests/support/SystemProcess.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class ProcessSystemTest : public SystemTest {
 protected:
  void SetUp() override { run_.AddDatabase(L"two.nsf", DocumentsJson(2)); }
};

std::uint32_t NumberAt(const std::string& bytes, std::size_t offset, std::size_t size) {
  std::uint32_t number = 0;
  for (std::size_t i = size; i-- > 0;) {
    number = number << 8 | static_cast<unsigned char>(bytes.at(offset + i));
  }
  return number;
}

TEST_F(ProcessSystemTest, TheProgramIsAWindowlessOne) {
  constexpr std::size_t kHeaderOffset = 0x3C;
  constexpr std::size_t kSubsystemOffset = 0x5C;
  constexpr std::uint32_t kWindowsWithoutConsole = 2;
  const std::string bytes = ReadBytes(run_.Executable());
  const std::uint32_t header = NumberAt(bytes, kHeaderOffset, 4);
  EXPECT_EQ(NumberAt(bytes, header + kSubsystemOffset, 2), kWindowsWithoutConsole);
}

TEST_F(ProcessSystemTest, WorkersAreStartedFromTheProgramsOwnFileWhateverTheFirstWordSays) {
  std::wstring line = run_.CommandLine(L"two.nsf", {L"-archive"});
  line.replace(0, line.find(L" ="), L"no-such-program");
  EXPECT_EQ(Program(run_.Executable(), line).WaitForEnd().exitCode, 0u);
  EXPECT_EQ(FilesIn("data").size(), 2u);
}

TEST_F(ProcessSystemTest, WithoutAnybodyWhoReadsTheProgressEverythingIsExported) {
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  std::wstring line = run_.CommandLine(L"two.nsf", {L"-archive"});
  ASSERT_TRUE(CreateProcessW(run_.Executable().c_str(), line.data(), nullptr, nullptr, FALSE,
                             DETACHED_PROCESS, nullptr, nullptr, &startup, &process));
  EXPECT_EQ(WaitForSingleObject(process.hProcess, 60000), WAIT_OBJECT_0);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  EXPECT_EQ(FilesIn("data").size(), 2u);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ProcessSystemTest, WorkersKeepTheCurrentFolder) {
  run_.SetOutput(L"out");
  std::wstring line = run_.CommandLine(L"two.nsf", {L"-archive"});
  run_.SetOutput(run_.folder() + L"\\out");
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  ASSERT_TRUE(CreateProcessW(run_.Executable().c_str(), line.data(), nullptr, nullptr, FALSE, 0,
                             nullptr, run_.folder().c_str(), &startup, &process));
  EXPECT_EQ(WaitForSingleObject(process.hProcess, 60000), WAIT_OBJECT_0);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  EXPECT_EQ(FilesIn("data").size(), 2u);
}

// Only the worker writes a marker, so only a plan that came down to it can strike.
TEST_F(ProcessSystemTest, WorkersGetTheEnvironmentOfTheirSupervisor) {
  run_.UseFaultyFiles("write marker.txt 1 diskFull");
  run_.Export(L"two.nsf", {L"-archive", L"-debug"});
  EXPECT_TRUE(Contains(LogLines(), "#DEBUG# - Retry WriteMarkerFile (No space left on device): 1"));
  EXPECT_EQ(FilesIn("data").size(), 2u);
}

// Somebody would have to close them.
TEST_F(ProcessSystemTest, NoRoleThatStartsTheLibraryLetsFaultsShowWindows) {
  run_.AddConfiguration("StandinProcess=1");
  run_.AddConfiguration("MailServer=Garden");
  const UINT mode = SetErrorMode(0);
  run_.Export(L"two.nsf", {L"-archive"});
  for (const wchar_t* listing : {L"-scan", L"-servers"}) {
    run_.RunArguments(
        {run_.ConfigurationArgument(), L"-o", run_.output(), L"-s", L"<Local>", listing});
  }
  SetErrorMode(mode);
  ASSERT_EQ(run_.LedgerLines().size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(Ledger(i).at("process").at("errorMode"), 3);
    EXPECT_EQ(Ledger(i).at("process").at("runtimeErrorMode"), _OUT_TO_STDERR);
  }
}

// Keeps this program's own standard handles, which the program under test has no use for, from it.
class OwnStandardHandles {
 public:
  OwnStandardHandles() { LetInherit(0); }
  ~OwnStandardHandles() { LetInherit(HANDLE_FLAG_INHERIT); }
  OwnStandardHandles(const OwnStandardHandles&) = delete;
  OwnStandardHandles& operator=(const OwnStandardHandles&) = delete;

 private:
  static void LetInherit(DWORD flag) {
    for (const DWORD standard : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
      SetHandleInformation(GetStdHandle(standard), HANDLE_FLAG_INHERIT, flag);
    }
  }
};

// Its standard handles and its stop pipe were inherited, and a listing has its file open.
TEST_F(ProcessSystemTest, WhatTheLibraryStartsInheritsNoHandleOfAWorkerOrAListing) {
  run_.AddConfiguration("StandinProcess=1");
  run_.AddConfiguration("MailServer=Garden");
  const OwnStandardHandles kept;
  StopPipe pipe;
  run_.Export(L"two.nsf", {L"-archive", L"-pipe", pipe.HandleText()});
  for (const wchar_t* listing : {L"-scan", L"-servers"}) {
    run_.RunArguments({run_.ConfigurationArgument(), L"-o", run_.output(), L"-s", L"<Local>",
                       L"-pipe", pipe.HandleText(), listing});
  }
  ASSERT_EQ(run_.LedgerLines().size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(Ledger(i).at("process").at("inheritableHandles"), 0);
  }
}

TEST_F(ProcessSystemTest, WhatTheLibraryStartsDoesNotInheritThePassword) {
  const ScopedEnvironmentVariable password(L"LARKSPAN_PASSWORD", L"x");
  const ScopedEnvironmentVariable other(L"LARKSPAN_OTHER", L"x");
  run_.AddConfiguration("StandinProcess=1");
  run_.AddConfiguration("MailServer=Garden");
  run_.Export(L"two.nsf", {L"-archive"});
  for (const wchar_t* listing : {L"-scan", L"-servers"}) {
    run_.RunArguments(
        {run_.ConfigurationArgument(), L"-o", run_.output(), L"-s", L"<Local>", listing});
  }
  ASSERT_EQ(run_.LedgerLines().size(), 3u);
  for (std::size_t i = 0; i < 3; ++i) {
    const Lines variables = Ledger(i).at("process").at("variables").get<Lines>();
    EXPECT_TRUE(Contains(variables, "LARKSPAN_OTHER"));
    EXPECT_FALSE(Contains(variables, "LARKSPAN_PASSWORD"));
  }
}

TEST_F(ProcessSystemTest, AWorkerThatCannotBeCreatedEndsTheRunWithAWholeAuditReport) {
  run_.AddDatabase(
      L"x.nsf",
      DocumentsJson(
          1, FaultsMember(R"({"entry": "DXLExportNote", "note": "00000902", "action": "exit"})")));
  run_.UseProgramCopy(run_.folder() + L"\\program", ProgramFolder());
  UniqueSystemHandle marker = Hold(L"marker.txt");
  Program program(run_.Executable(), run_.CommandLine(L"x.nsf", {L"-archive", L"-debug"}));
  // The first worker runs by now, and waits.
  AwaitLogLine("#DEBUG# - Retry WriteMarkerFile");
  ASSERT_TRUE(MoveFileW(run_.Executable().c_str(), (run_.Executable() + L".away").c_str()));
  marker.reset();
  EXPECT_EQ(program.WaitForEnd().exitCode, 0u);
  const Lines log = LogLines();
  EXPECT_TRUE(Contains(log, "#WARNING# - Major: Incomplete run detected for note id 00000902"));
  EXPECT_TRUE(Contains(log, "#ERROR# - CreateProcess failed (2)"));
  EXPECT_EQ(CountLines(log, "#DEBUG# - Invoking child process"), 2);
  EXPECT_EQ(Tail(AuditLines(), 12), ClosingLines({.listed = 1, .failed = 1}));
}

TEST_F(ProcessSystemTest, ALaterWorkerInheritsTheStopPipeToo) {
  run_.AddDatabase(L"slow.nsf",
                   DocumentsJson(60, FaultsMember(
                                         R"({"entry": "DXLExportNote", "note": "00000902",
                                             "action": "accessViolation"},
                                            {"entry": "DXLExportNote", "wait": 100})")));
  StopPipe pipe;
  Program program(run_.Executable(),
                  run_.CommandLine(L"slow.nsf", {L"-archive", L"-pipe", pipe.HandleText()}));
  pipe.CloseReadEnd();
  ASSERT_TRUE(program.ReadUntil("PROGRESS: Opening ", 2));
  ASSERT_TRUE(program.ReadUntil("PROGRESS: DOCUMENT: ", 3));
  pipe.Close();
  program.WaitForEnd();
  EXPECT_LT(FilesIn("data").size(), 59u);
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
}

// A few processes at most, which end with it: a command line that was cut once started supervisors
// without end.
UniqueSystemHandle SmallJob() {
  UniqueSystemHandle job(CreateJobObjectW(nullptr, nullptr));
  JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
  limits.BasicLimitInformation.LimitFlags =
      JOB_OBJECT_LIMIT_ACTIVE_PROCESS | JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE;
  limits.BasicLimitInformation.ActiveProcessLimit = 4;
  SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits);
  return job;
}

// A command line of that length: what is too many in it is an "=" argument that does not count.
class LongCommandLineSystemTest : public ProcessSystemTest {
 protected:
  std::optional<DWORD> RunWithLength(std::size_t length) {
    std::wstring line = run_.CommandLine(L"two.nsf", {L"-archive", L"-debug"});
    const std::size_t padding = length - line.size() - 2;
    line.insert(line.find(L" ="), L" =" + std::wstring(padding, L'x'));
    const UniqueSystemHandle job = SmallJob();
    const UniqueSystemHandle nowhere = OpenNowhere();
    const SystemProcess process = StartProcess(run_.Executable(), line, nowhere.get(), job.get());
    return AwaitExitCode(process.handle.get(), 60000);
  }
};

TEST_F(LongCommandLineSystemTest, ThatItsWorkersCannotBeGivenStartsNothing) {
  EXPECT_EQ(RunWithLength(32760), std::optional<DWORD>(0));
  EXPECT_TRUE(Contains(LogLines(), "#ERROR# - CreateProcess failed (206)"));
  EXPECT_EQ(CountLines(LogLines(), "#DEBUG# - Top of Archive Main Loop with nid 00000000"), 1);
  EXPECT_EQ(FilesIn("data"), Lines());
}

TEST_F(LongCommandLineSystemTest, ThatIsJustShortEnoughIsGivenToTheWorkersWhole) {
  EXPECT_EQ(RunWithLength(32000), std::optional<DWORD>(0));
  EXPECT_EQ(FilesIn("data").size(), 2u);
}

}  // namespace
}  // namespace larkspan::testing
