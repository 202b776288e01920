#include "report/Progress.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "tests/support/CapturedOutput.h"
#include "tests/support/OutputFolderTest.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/Utf8Check.h"

namespace larkspan {
namespace {

void ReturnAtOnce(std::int64_t) {}

[[noreturn]] void EndAbnormally(std::int64_t) { throw std::runtime_error("read"); }

// An archive run with a pipe; tests change what they are about.
class ProgressTest : public OutputFolderTest {
 protected:
  ProgressTest() {
    ClearStopRequestForTesting();
    SetArchive(true);
    SetPipe(44);
  }
  ~ProgressTest() override { ClearStopRequestForTesting(); }

  static void SetPipe(std::int64_t pipe) {
    ChangeSettings([pipe](Settings& settings) { settings.progressPipe = pipe; });
  }
};

TEST_F(ProgressTest, LineIsWritten) {
  CapturedOutput output;
  Progress(L"Opening '%s' on '%s'", L"a.nsf", L"Mail");
  EXPECT_EQ(output.Flushed(), "PROGRESS: Opening 'a.nsf' on 'Mail'\r\n");
}

TEST_F(ProgressTest, WrittenLineDoesNotStop) {
  CapturedOutput output;
  EXPECT_FALSE(Progress(L"DOCUMENT: %08X", 0x12F6u));
}

TEST_F(ProgressTest, LinesFollowOneAnother) {
  CapturedOutput output;
  Progress(L"DOCCOUNT: %d", 2);
  Progress(L"DOCUMENT: %08X", 0x12F6u);
  EXPECT_EQ(output.Flushed(), "PROGRESS: DOCCOUNT: 2\r\nPROGRESS: DOCUMENT: 000012F6\r\n");
}

TEST_F(ProgressTest, LineIsUtf8) {
  CapturedOutput output;
  Progress(L"%s", L"\u00E9\u03A9\u65E5\U0001F600");
  EXPECT_EQ(output.Flushed(), "PROGRESS: \xC3\xA9\xCE\xA9\xE6\x97\xA5\xF0\x9F\x98\x80\r\n");
}

TEST_F(ProgressTest, EmptyMessageGivesALine) {
  CapturedOutput output;
  Progress(L"%s", L"");
  EXPECT_EQ(output.Flushed(), "PROGRESS: \r\n");
}

TEST_F(ProgressTest, MessageOf1023CharactersIsWhole) {
  CapturedOutput output;
  Progress(L"%s", std::wstring(1023, L'a').c_str());
  EXPECT_EQ(output.Flushed(), "PROGRESS: " + std::string(1023, 'a') + "\r\n");
}

TEST_F(ProgressTest, LongerMessageIsCutAndKeepsItsLineEnd) {
  CapturedOutput output;
  Progress(L"%s", std::wstring(5000, L'a').c_str());
  EXPECT_EQ(output.Flushed(), "PROGRESS: " + std::string(1023, 'a') + "\r\n");
}

TEST_F(ProgressTest, CutNeverSplitsASurrogatePair) {
  CapturedOutput output;
  Progress(L"%s\U0001F600", std::wstring(1022, L'a').c_str());
  EXPECT_TRUE(IsWholeUtf8(output.Flushed()));
}

TEST_F(ProgressTest, NothingIsWrittenOutsideArchiveMode) {
  SetArchive(false);
  CapturedOutput output;
  EXPECT_FALSE(Progress(L"Scanning documents"));
  EXPECT_EQ(output.Flushed(), "");
}

TEST_F(ProgressTest, StopRequestDoesNothingOutsideArchiveMode) {
  MonitorPipe(ReturnAtOnce);
  SetArchive(false);
  CapturedOutput output;
  EXPECT_FALSE(Progress(L"Scanning documents"));
}

TEST_F(ProgressTest, StopRequestIsTold) {
  MonitorPipe(ReturnAtOnce);
  CapturedOutput output;
  EXPECT_TRUE(Progress(L"Scanning documents"));
}

TEST_F(ProgressTest, NothingIsWrittenAfterAStopRequest) {
  MonitorPipe(ReturnAtOnce);
  CapturedOutput output;
  Progress(L"Scanning documents");
  EXPECT_EQ(output.Flushed(), "");
}

TEST_F(ProgressTest, StopRequestHoldsForEveryLaterLine) {
  MonitorPipe(ReturnAtOnce);
  CapturedOutput output;
  Progress(L"VIEW: %08X", 1u);
  EXPECT_TRUE(Progress(L"VIEW: %08X", 2u));
}

TEST_F(ProgressTest, ProgressIsNotLogged) {
  CapturedOutput output;
  Progress(L"Scanning documents");
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ProgressTest, MonitorReadsThePipeOfTheSettingsOnce) {
  std::vector<std::int64_t> pipes;
  MonitorPipe([&](std::int64_t pipe) { pipes.push_back(pipe); });
  EXPECT_EQ(pipes, std::vector<std::int64_t>{44});
}

TEST_F(ProgressTest, MonitorLogsTheEndOfTheRead) {
  MonitorPipe(ReturnAtOnce);
  EXPECT_EQ(LogLines(), Lines{"#DEBUG# - MonitorPipe: Read completed cleanly"});
}

TEST_F(ProgressTest, LinesAreWrittenUntilTheReadReturns) {
  CapturedOutput output;
  bool stoppedDuringRead = true;
  MonitorPipe([&](std::int64_t) { stoppedDuringRead = Progress(L"Scanning documents"); });
  EXPECT_FALSE(stoppedDuringRead);
}

TEST_F(ProgressTest, MonitorWithoutPipeDoesNotRead) {
  SetPipe(-1);
  bool wasRead = false;
  MonitorPipe([&](std::int64_t) { wasRead = true; });
  EXPECT_FALSE(wasRead);
}

TEST_F(ProgressTest, MonitorWithoutPipeLogsNothing) {
  SetPipe(-1);
  MonitorPipe(ReturnAtOnce);
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ProgressTest, MonitorWithoutPipeStopsNothing) {
  SetPipe(-1);
  MonitorPipe(ReturnAtOnce);
  CapturedOutput output;
  EXPECT_FALSE(Progress(L"Scanning documents"));
}

TEST_F(ProgressTest, PipeZeroIsRead) {
  SetPipe(0);
  bool wasRead = false;
  MonitorPipe([&](std::int64_t) { wasRead = true; });
  EXPECT_TRUE(wasRead);
}

TEST_F(ProgressTest, AbnormalEndOfTheReadIsAWarning) {
  MonitorPipe(EndAbnormally);
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - MonitorPipe: Abnormal termination"});
}

TEST_F(ProgressTest, AbnormalEndOfTheReadStopsNothing) {
  MonitorPipe(EndAbnormally);
  CapturedOutput output;
  EXPECT_FALSE(Progress(L"Scanning documents"));
}

HANDLE WINAPI CreateNoThread(SECURITY_ATTRIBUTES*, SIZE_T, LPTHREAD_START_ROUTINE, void*, DWORD,
                             DWORD*) {
  return nullptr;
}

TEST_F(ProgressTest, MonitorThatCannotBeStartedIsAWarning) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "CreateThread", CreateNoThread);
  StartPipeMonitor();
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - MonitorPipe: Abnormal termination"});
}

}  // namespace
}  // namespace larkspan
