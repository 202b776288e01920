#include "report/RunLog.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>

#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"
#include "tests/support/Utf8Check.h"

namespace larkspan {
namespace {

class RunLogTest : public OutputFolderTest {
 protected:
  std::string LogBytes() const { return ReadBytes(log_); }

  const std::wstring log_ = PathOf(L"log.txt");
};

void LogOneOfEachLevel() {
  LogDebug(L"d");
  LogWarning(L"w");
  LogError(L"e");
}

TEST_F(RunLogTest, DebugLineCarriesItsLevelWord) {
  Log(LogLevel::kDebug, L"Invoking child process");
  EXPECT_EQ(LogBytes(), "#DEBUG# - Invoking child process\r\n");
}

TEST_F(RunLogTest, WarningLineCarriesItsLevelWord) {
  Log(LogLevel::kWarning, L"Major: lost");
  EXPECT_EQ(LogBytes(), "#WARNING# - Major: lost\r\n");
}

TEST_F(RunLogTest, ErrorLineCarriesItsLevelWord) {
  Log(LogLevel::kError, L"Maximum retries exceeded");
  EXPECT_EQ(LogBytes(), "#ERROR# - Maximum retries exceeded\r\n");
}

TEST_F(RunLogTest, LevelsAreTheNumbersOfTheMinimumLevel) {
  EXPECT_EQ(static_cast<int>(LogLevel::kDebug), 0);
  EXPECT_EQ(static_cast<int>(LogLevel::kWarning), 1);
  EXPECT_EQ(static_cast<int>(LogLevel::kError), 2);
}

TEST_F(RunLogTest, FormattingFunctionsLogAtTheirLevel) {
  LogOneOfEachLevel();
  EXPECT_EQ(LogBytes(), "#DEBUG# - d\r\n#WARNING# - w\r\n#ERROR# - e\r\n");
}

TEST_F(RunLogTest, DebugLinesAreDroppedByDefault) {
  LeaveOutLinesBelow(Settings().minimumLogLevel);
  LogOneOfEachLevel();
  EXPECT_EQ(LogBytes(), "#WARNING# - w\r\n#ERROR# - e\r\n");
}

TEST_F(RunLogTest, MinimumLevelErrorLeavesErrors) {
  LeaveOutLinesBelow(2);
  LogOneOfEachLevel();
  EXPECT_EQ(LogBytes(), "#ERROR# - e\r\n");
}

TEST_F(RunLogTest, DroppedLineMakesNoFile) {
  LeaveOutDebugLines();
  LogDebug(L"d");
  EXPECT_FALSE(Exists(log_));
}

TEST_F(RunLogTest, LineIsAppendedToWhatIsThere) {
  WriteBytes(log_, "earlier\r\n");
  LogError(L"later");
  EXPECT_EQ(LogBytes(), "earlier\r\n#ERROR# - later\r\n");
}

TEST_F(RunLogTest, FileIsNotKeptOpenBetweenLines) {
  LogError(L"one");
  WriteBytes(log_, "");
  LogError(L"two");
  EXPECT_EQ(LogBytes(), "#ERROR# - two\r\n");
}

TEST_F(RunLogTest, EmptyMessageGivesALine) {
  Log(LogLevel::kError, L"");
  EXPECT_EQ(LogBytes(), "#ERROR# - \r\n");
}

TEST_F(RunLogTest, FinishedMessageIsNotFormattedAgain) {
  Log(LogLevel::kError, L"100%s %d %n %%");
  EXPECT_EQ(LogBytes(), "#ERROR# - 100%s %d %n %%\r\n");
}

TEST_F(RunLogTest, FormattedMessageIsNotFormattedAgain) {
  LogError(L"%s", L"100%s %d %n %%");
  EXPECT_EQ(LogBytes(), "#ERROR# - 100%s %d %n %%\r\n");
}

TEST_F(RunLogTest, FormatTakesWideTextAndNumbers) {
  LogWarning(L"%s: %08X, %d, %u", L"caf\u00E9", 0x12F6u, -5, 3221225477u);
  EXPECT_EQ(LogBytes(), "#WARNING# - caf\xC3\xA9: 000012F6, -5, 3221225477\r\n");
}

TEST_F(RunLogTest, TextIsUtf8) {
  LogError(L"\u00E9\u03A9\u65E5\U0001F600");
  EXPECT_EQ(LogBytes(), "#ERROR# - \xC3\xA9\xCE\xA9\xE6\x97\xA5\xF0\x9F\x98\x80\r\n");
}

TEST_F(RunLogTest, LineOf1023CharactersIsWhole) {
  const std::string message(1023 - sizeof("#ERROR# - \n") + 1, 'a');
  LogError(L"%s", std::wstring(message.begin(), message.end()).c_str());
  EXPECT_EQ(LogBytes(), "#ERROR# - " + message + "\r\n");
}

TEST_F(RunLogTest, LongerLineIsCutTo1023CharactersAndKeepsItsEnd) {
  LogError(L"%s", std::wstring(1013, L'a').c_str());
  EXPECT_EQ(LogBytes(), "#ERROR# - " + std::string(1012, 'a') + "\r\n");
}

TEST_F(RunLogTest, FinishedMessageOfAnyLengthIsCut) {
  Log(LogLevel::kError, std::wstring(100000, L'a'));
  EXPECT_EQ(LogBytes(), "#ERROR# - " + std::string(1012, 'a') + "\r\n");
}

TEST_F(RunLogTest, FormattedMessageOfAnyLengthIsCut) {
  LogError(L"%s", std::wstring(100000, L'a').c_str());
  EXPECT_EQ(LogBytes(), "#ERROR# - " + std::string(1012, 'a') + "\r\n");
}

TEST_F(RunLogTest, CutLinesStayLinesOfTheirOwn) {
  Log(LogLevel::kError, std::wstring(5000, L'a'));
  LogError(L"next");
  const Lines lines = LogLines();
  ASSERT_EQ(lines.size(), 2u);
  EXPECT_EQ(lines[1], "#ERROR# - next");
}

TEST_F(RunLogTest, LongUtf8IsCutTo1023Bytes) {
  LogError(L"%s", std::wstring(600, L'\u00E9').c_str());
  std::string expected = "#ERROR# - ";
  for (int i = 0; i < 506; ++i) expected += "\xC3\xA9";
  EXPECT_EQ(LogBytes(), expected + "\r\n");
}

// A cut in the middle of a character shows for at least one of the two starts, since they differ
// by one byte and one unit.
TEST_F(RunLogTest, CutNeverSplitsACharacter) {
  for (const std::wstring start : {L"", L"a", L"aa", L"aaa"}) {
    std::wstring message = start;
    for (int i = 0; i < 600; ++i) message += L"\U0001F600";
    LogError(L"%s", message.c_str());
  }
  const Lines lines = LogLines();
  ASSERT_EQ(lines.size(), 4u);
  for (const std::string& line : lines) EXPECT_TRUE(IsWholeUtf8(line)) << line;
}

TEST_F(RunLogTest, CutInCharactersNeverSplitsASurrogatePair) {
  for (const std::wstring& start : {std::wstring(1011, L'a'), std::wstring(1012, L'a')}) {
    LogError(L"%s", (start + L"\U0001F600\U0001F600").c_str());
  }
  const Lines lines = LogLines();
  ASSERT_EQ(lines.size(), 2u);
  for (const std::string& line : lines) EXPECT_TRUE(IsWholeUtf8(line)) << line;
}

TEST_F(RunLogTest, LoneSurrogateDoesNotEndTheLine) {
  LogError(L"a%sb", L"\xD83D");
  EXPECT_EQ(LogBytes(),
            "#ERROR# - a\xEF\xBF\xBD"
            "b\r\n");
}

TEST_F(RunLogTest, LinesOfTwoThreadsStayWholeAndNoneIsLost) {
  constexpr int kLinesOfAThread = 3000;
  const auto writeLines = [] {
    for (int i = 0; i < kLinesOfAThread; ++i) LogError(L"line");
  };
  std::thread other(writeLines);
  writeLines();
  other.join();
  EXPECT_EQ(LogLines(), Lines(2 * kLinesOfAThread, "#ERROR# - line"));
}

TEST_F(RunLogTest, MissingOutputFolderIsSilent) {
  UseOutputFolder(L"missing");
  LogError(L"lost");
  EXPECT_FALSE(Exists(PathOf(L"missing")));
}

TEST_F(RunLogTest, FolderInTheWayIsSilent) {
  MakeFolder(log_);
  LogError(L"lost");
  EXPECT_TRUE(Exists(log_));
}

TEST_F(RunLogTest, FileNameIsJoinedToTheOutputFolderAsItStands) {
  UseOutputFolder(L"");  // Ends in a backslash, which makes two.
  LogError(L"e");
  EXPECT_EQ(LogBytes(), "#ERROR# - e\r\n");
}

}  // namespace
}  // namespace larkspan
