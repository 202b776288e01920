// How a worker starts the Notes runtime and switches to an ID file, and what happens when it
// cannot.
#include <chrono>

#include "base/Utf8.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

constexpr char kStartFails[] = R"([{"entry": "NotesInitExtended", "status": 422}])";

class RuntimeStartSystemTest : public SystemTest {
 protected:
  // The arguments that the library was started with, as the ledger of that runtime has them.
  nlohmann::json StartArguments(std::size_t runtime) const {
    return Ledger(runtime).at("arguments").at("NotesInitExtended");
  }

  std::string ConfigurationText() const { return WideToUtf8(run_.ConfigurationArgument()); }
};

// This test waits as long as the program does.
TEST_F(RuntimeStartSystemTest, ThreeFailuresInARowEndTheRunWithAWholeAuditReport) {
  constexpr std::chrono::seconds kTwoPauses{10};
  run_.SetFaults(kStartFails);
  const auto start = std::chrono::steady_clock::now();
  const ProgramResult result = run_.Export(L"sample.nsf", {L"-archive"});
  EXPECT_GE(std::chrono::steady_clock::now() - start, kTwoPauses);
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(result.standardOutput, "");
  EXPECT_EQ(LogLines(), (Lines{"#WARNING# - Notes initialization failed (1A6)",
                               "#WARNING# - Notes initialization failed (1A6)",
                               "#WARNING# - Notes initialization failed (1A6)",
                               "#ERROR# - Maximum retries exceeded"}));
  EXPECT_EQ(AuditLines(), Join({{"Archive started at: *"}, ClosingLines({})}));
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_EQ(run_.LedgerFault(0), "");
}

TEST_F(RuntimeStartSystemTest, AFailureOfTheFirstWorkerMarksNoteZero) {
  run_.SetFaults(kStartFails);
  EXPECT_EQ(run_.Export(L"sample.nsf", {L"-l", L"0"}).exitCode, 0u);
  EXPECT_EQ(run_.OutputFile(L"marker.txt"), "00000000\r\n");
}

TEST_F(RuntimeStartSystemTest, AFailureOfALaterWorkerMarksItsResumeNote) {
  run_.SetFaults(kStartFails);
  run_.Export(L"sample.nsf", {L"-l", L"12f6"});
  EXPECT_EQ(run_.OutputFile(L"marker.txt"), "000012F6\r\n");
}

TEST_F(RuntimeStartSystemTest, TheStatusIsShownWholeWithItsTopBits) {
  run_.SetFaults(R"([{"entry": "NotesInitExtended", "status": "0x81A6"}])");
  run_.Export(L"sample.nsf", {L"-l", L"0"});
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Notes initialization failed (81A6)"});
}

TEST_F(RuntimeStartSystemTest, AMissingConfigurationIsKnownWhateverTheTopBitsOfItsStatus) {
  run_.SetFaults(R"([{"entry": "NotesInitExtended", "status": "0xC1A5"}])");
  run_.Export(L"sample.nsf", {L"-l", L"0"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to locate notes.ini"});
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
}

TEST_F(RuntimeStartSystemTest, AMissingConfigurationEndsTheRunWithAWholeAuditReport) {
  const ProgramResult result =
      run_.RunArguments({L"=" + run_.folder() + L"\\none.ini", L"-p", L"sample.nsf", L"-o",
                         run_.output(), L"-archive"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to locate notes.ini"});
  EXPECT_EQ(AuditLines(), Join({{"Archive started at: *"}, ClosingLines({})}));
}

TEST_F(RuntimeStartSystemTest, WithoutAnArgumentForItTheLibraryLooksForItself) {
  run_.UseProgramCopy(run_.folder() + L"\\program", ProgramFolder());
  run_.WriteConfigurationTo(run_.folder() + L"\\program\\notes.ini");
  run_.LeaveOutConfiguration();
  run_.Export(L"empty.nsf", {});
  EXPECT_EQ(run_.LedgerFault(1), "");
  EXPECT_EQ(StartArguments(0).at("argc"), 1);
  EXPECT_EQ(StartArguments(0).at("argv"), nlohmann::json({WideToUtf8(run_.Executable())}));
}

TEST_F(RuntimeStartSystemTest, TheLibraryGetsTheProgramAndTheArgumentForIt) {
  run_.Export(L"empty.nsf", {});
  EXPECT_EQ(StartArguments(0).at("argc"), 2);
  EXPECT_EQ(StartArguments(0).at("argv"),
            nlohmann::json({WideToUtf8(run_.Executable()), ConfigurationText()}));
}

TEST_F(RuntimeStartSystemTest, OfSeveralArgumentsForItTheLastWinsAndAllAreCounted) {
  run_.RunArguments({L"=none.ini", L"-p", L"empty.nsf", L"=other.ini", L"-o", run_.output(),
                     run_.ConfigurationArgument()});
  ASSERT_EQ(run_.LedgerFault(1), "");
  EXPECT_EQ(StartArguments(0).at("argc"), 4);
  EXPECT_EQ(StartArguments(0).at("argv").at(1), ConfigurationText());
}

TEST_F(RuntimeStartSystemTest, AnArgumentForItCountsAlsoAsTheValueOfAnOption) {
  run_.RunArguments(
      {L"-p", L"empty.nsf", L"-o", run_.output(), L"-password", run_.ConfigurationArgument()});
  ASSERT_EQ(run_.LedgerFault(1), "");
  EXPECT_EQ(StartArguments(0).at("argc"), 2);
  EXPECT_EQ(StartArguments(0).at("argv").at(1), ConfigurationText());
}

class SwitchIdSystemTest : public SystemTest {
 protected:
  std::string User() const { return AuditLines().at(1); }
};

TEST_F(SwitchIdSystemTest, TheRightPasswordSwitchesTheUser) {
  run_.Export(L"empty.nsf", {L"-archive", L"-id", L"ids\\imke.id", L"-password", L"Rittersporn"});
  EXPECT_EQ(User(), "Set user to: CN=Imke Sommer/O=Garten");
  EXPECT_EQ(Ledger(0).at("arguments").at("SECKFMSwitchToIDFile"),
            nlohmann::json({{"idFile", "ids\\imke.id"}, {"size", 256}, {"flags", 8}}));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(SwitchIdSystemTest, FileNameUserAndPasswordOutsideAsciiAreWholeEverywhere) {
  run_.Export(L"empty.nsf",
              {L"-id", L"ids\\no\u00E9.id", L"-password", L"p\u00E2querette", L"-archive"});
  EXPECT_EQ(User(), "Set user to: CN=No\xC3\xA9 B\xC3\xA9ranger/O=Garten");
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(SwitchIdSystemTest, AWrongPasswordEndsTheRunWithoutAnExport) {
  const ProgramResult result =
      run_.Export(L"sample.nsf", {L"-archive", L"-id", L"ids\\imke.id", L"-password", L"wrong"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(result.standardOutput, "");
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to switch ID (Wrong password)"});
  EXPECT_EQ(AuditLines(), Join({{"Archive started at: *"}, ClosingLines({})}));
  EXPECT_FALSE(run_.HasOutputFile(L"idtable.txt"));
}

TEST_F(SwitchIdSystemTest, AWrongPasswordWritesNoMarkerAndEndsTheRuntime) {
  run_.Export(L"sample.nsf",
              {L"-l", L"0", L"-debug", L"-id", L"ids\\imke.id", L"-password", L"wrong"});
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_EQ(LogLines(), (Lines{"#ERROR# - Unable to switch ID (Wrong password)",
                               "#DEBUG# - Exiting via SEH finally", "#DEBUG# - Trying to NotesTerm",
                               "#DEBUG# - NotesTermed"}));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(SwitchIdSystemTest, AnIdFileThatIsMissingEndsTheRun) {
  run_.Export(L"sample.nsf", {L"-id", L"ids\\none.id", L"-password", L"x"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to switch ID (ID file does not exist)"});
}

TEST_F(SwitchIdSystemTest, AnIdFileWithoutAPasswordIsNotSwitchedTo) {
  run_.Export(L"empty.nsf", {L"-archive", L"-id", L"ids\\imke.id"});
  EXPECT_EQ(User(), "Set user to: CN=Larkspan Tester/O=Example");
  EXPECT_EQ(Calls(0, "SECKFMSwitchToIDFile"), 0);
}

TEST_F(SwitchIdSystemTest, APasswordWithoutAnIdFileIsNotUsed) {
  run_.Export(L"empty.nsf", {L"-archive", L"-password", L"Rittersporn"});
  EXPECT_EQ(User(), "Set user to: CN=Larkspan Tester/O=Example");
  EXPECT_EQ(Calls(0, "SECKFMSwitchToIDFile"), 0);
}

}  // namespace
}  // namespace larkspan::testing
