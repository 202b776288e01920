#include "app/RunWorker.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <stdexcept>
#include <string>

#include "tests/support/CapturedOutput.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

// Runs whole workers, which start and end the runtime by themselves.
class RunWorkerTest : public NotesFixture {
 protected:
  RunWorkerTest() : errorMode_(GetErrorMode()) {
    WriteDatabase(R"({"notes": [{"id": "0000090A", "class": "form"}]})");
    WriteData(L"noe.id", "{\"name\": \"CN=No\u00E9/O=Garten\", \"password\": \"secret\"}");
    ChangeSettings([](Settings& settings) { settings.databasePath = L"test.nsf"; });
    Configure();
  }
  ~RunWorkerTest() override { SetErrorMode(errorMode_); }

  static void SetId(const std::wstring& idFile, const std::wstring& password) {
    ChangeSettings([&](Settings& settings) {
      settings.idFile = idFile;
      settings.idPassword = password;
    });
  }

  bool HasExported() const { return Exists(PathOf(L"0000090A.dxl")); }
  bool HasMarker() const { return Exists(PathOf(L"marker.txt")); }

  // The start of the runtime fails with this status.
  static void FailStart(const std::string& status) {
    SetFaults(R"([{"entry": "NotesInitExtended", "status": )" + status + "}]");
  }

 private:
  UINT errorMode_;
};

const Lines kEndLines = {"#DEBUG# - Trying to NotesTerm", "#DEBUG# - NotesTermed"};

Lines WithEnd(Lines lines) {
  lines.insert(lines.end(), kEndLines.begin(), kEndLines.end());
  return lines;
}

TEST_F(RunWorkerTest, ExportsAndEndsTheRuntime) {
  RunWorker(0);
  EXPECT_TRUE(HasExported());
  EXPECT_EQ(LogLines(), kEndLines);
  EXPECT_EQ(Calls("NotesTerm"), 1);
}

TEST_F(RunWorkerTest, LeavesNoMarker) {
  RunWorker(0);
  EXPECT_FALSE(HasMarker());
}

TEST_F(RunWorkerTest, ShowsNoFaultDialogFromThenOn) {
  SetErrorMode(0);
  RunWorker(0);
  EXPECT_EQ(GetErrorMode(), UINT{SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX});
}

TEST_F(RunWorkerTest, MissingConfigurationIsAnErrorLine) {
  ChangeSettings([](Settings& settings) { settings.runtimeArguments = {L"=missing.ini"}; });
  RunWorker(0);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to locate notes.ini"});
}

TEST_F(RunWorkerTest, MissingConfigurationLeavesNoMarker) {
  ChangeSettings([](Settings& settings) { settings.runtimeArguments = {L"=missing.ini"}; });
  RunWorker(0x902);
  EXPECT_FALSE(HasMarker());
}

TEST_F(RunWorkerTest, MissingConfigurationIsKnownWhateverTheTopBits) {
  FailStart("\"0xC1A5\"");
  RunWorker(0x902);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to locate notes.ini"});
  EXPECT_FALSE(HasMarker());
}

TEST_F(RunWorkerTest, FailingStartIsAWarningWithTheWholeStatus) {
  FailStart("\"0x81AB\"");
  RunWorker(0);
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Notes initialization failed (81AB)"});
}

TEST_F(RunWorkerTest, FailingStartMarksTheResumeNote) {
  FailStart("1");
  RunWorker(0x12F6);
  EXPECT_EQ(ReadBytes(PathOf(L"marker.txt")), "000012F6\r\n");
}

TEST_F(RunWorkerTest, FailingStartOfTheFirstWorkerMarksZero) {
  FailStart("1");
  RunWorker(0);
  EXPECT_EQ(ReadBytes(PathOf(L"marker.txt")), "00000000\r\n");
}

TEST_F(RunWorkerTest, FailingStartExportsNothing) {
  FailStart("1");
  RunWorker(0);
  EXPECT_FALSE(HasExported());
  EXPECT_FALSE(Exists(PathOf(L"audit.txt")));
}

TEST_F(RunWorkerTest, FirstWorkerTellsTheUser) {
  RunWorker(0);
  EXPECT_EQ(ReadLines(PathOf(L"audit.txt")).front(), "Set user to: CN=Larkspan Tester/O=Example");
}

TEST_F(RunWorkerTest, SwitchedUserIsTold) {
  SetId(L"noe.id", L"secret");
  RunWorker(0);
  EXPECT_EQ(ReadLines(PathOf(L"audit.txt")).front(), "Set user to: CN=No\u00E9/O=Garten");
}

TEST_F(RunWorkerTest, LaterWorkerDoesNotTellTheUser) {
  WriteBytes(PathOf(L"idtable.txt"), "00000902\n");
  RunWorker(0x902);
  EXPECT_EQ(ReadLines(PathOf(L"audit.txt")).size(), 1u);
}

TEST_F(RunWorkerTest, UserThatTheLibraryDoesNotKnowIsEmpty) {
  SetFaults(R"([{"entry": "SECKFMGetUserName", "status": 273}])");
  RunWorker(0);
  EXPECT_EQ(ReadLines(PathOf(L"audit.txt")).front(), "Set user to: ");
  EXPECT_TRUE(HasExported());
}

TEST_F(RunWorkerTest, WithoutPasswordTheDefaultIdIsUsed) {
  SetId(L"noe.id", L"");
  RunWorker(0);
  EXPECT_EQ(Calls("SECKFMSwitchToIDFile"), 0);
  EXPECT_TRUE(HasExported());
}

TEST_F(RunWorkerTest, WrongPasswordIsAnErrorLine) {
  SetId(L"noe.id", L"wrong");
  RunWorker(0);
  EXPECT_EQ(LogLines().front(), "#ERROR# - Unable to switch ID (Wrong password)");
}

TEST_F(RunWorkerTest, WrongPasswordExportsNothing) {
  SetId(L"noe.id", L"wrong");
  RunWorker(0);
  EXPECT_FALSE(HasExported());
  EXPECT_FALSE(HasMarker());
  EXPECT_FALSE(Exists(PathOf(L"audit.txt")));
}

TEST_F(RunWorkerTest, ExceptionOutOfTheExportIsADebugLineAndEndsTheRuntime) {
  SetFaults(R"([{"entry": "DXLExportNote", "action": "throw"}])");
  EXPECT_NO_THROW(RunWorker(0));
  EXPECT_EQ(LogLines(), WithEnd({"#DEBUG# - Exiting via catch-all handler"}));
}

TEST_F(RunWorkerTest, ExceptionOutOfTheExportLeavesTheMarkerOfItsNote) {
  SetFaults(R"([{"entry": "DXLExportNote", "action": "throw"}])");
  RunWorker(0);
  EXPECT_EQ(ReadBytes(PathOf(L"marker.txt")), "0000090A\r\n");
}

constexpr char kEndedByAnException[] = "#ERROR# - The export was ended by an exception";

TEST_F(RunWorkerTest, ExceptionOutOfTheOpeningEndsTheRuntime) {
  SetFaults(R"([{"entry": "NSFDbOpen", "action": "throw"}])");
  RunWorker(0);
  EXPECT_EQ(LogLines(), WithEnd({"#DEBUG# - Exiting via catch-all handler", kEndedByAnException}));
}

TEST_F(RunWorkerTest, ExceptionOutOfTheStartEndsNoRuntime) {
  SetFaults(R"([{"entry": "NotesInitExtended", "action": "throw"}])");
  RunWorker(0);
  EXPECT_EQ(LogLines(), (Lines{"#DEBUG# - Exiting via catch-all handler", kEndedByAnException}));
}

void LARKSPAN_NOTES_CALL EndAndThrow() {
  Original("NotesTerm", notes_api::NotesTerm)();
  throw std::runtime_error("out of the library");
}

TEST_F(RunWorkerTest, ExceptionAtTheEndOfTheRuntimeIsNoneOfTheExport) {
  const ReplacedEntryPoint replaced("NotesTerm", EndAndThrow);
  RunWorker(0);
  EXPECT_TRUE(HasExported());
  EXPECT_EQ(LogLines(),
            (Lines{"#DEBUG# - Trying to NotesTerm",
                   "#WARNING# - The end of the Notes runtime was ended by an exception"}));
}

TEST_F(RunWorkerTest, PasswordDoesNotStayInTheSettings) {
  SetId(L"noe.id", L"secret");
  RunWorker(0);
  EXPECT_EQ(ProcessSettings().idPassword, L"");
}

}  // namespace
}  // namespace larkspan
