// The closing block of the audit report: what the run log says about documents.
#include <gtest/gtest.h>

#include <ctime>
#include <filesystem>
#include <string>

#include "report/RunLog.h"
#include "supervision/AuditBlocks.h"
#include "tests/support/AuditEndTest.h"

namespace larkspan {
namespace {

using AuditEndLogTest = AuditEndTest;

TEST_F(AuditEndLogTest, MissingLogCountsAsClean) {
  LeaveOutDebugLines();
  EXPECT_EQ(LastLine(), "Documents exported with warnings :        0");
}

TEST_F(AuditEndLogTest, MajorLinesCountAsFailed) {
  SetLog("#WARNING# - Major: a\r\n#WARNING# - x\r\n#WARNING# - Major:\r\n");
  EXPECT_EQ(Failed(), "       2");
}

TEST_F(AuditEndLogTest, MinorLinesCountAsWarnings) {
  SetLog("#WARNING# - Minor: a\r\n#WARNING# - x\r\n#WARNING# - Minor:\r\n");
  EXPECT_EQ(Warned(), "       2");
}

TEST_F(AuditEndLogTest, MinorLinesDoNotCountAsFailed) {
  SetLog("#WARNING# - Minor: a\r\n");
  EXPECT_EQ(Failed(), "       0");
}

TEST_F(AuditEndLogTest, MajorLinesDoNotCountAsWarnings) {
  SetLog("#WARNING# - Major: a\r\n");
  EXPECT_EQ(Warned(), "       0");
}

TEST_F(AuditEndLogTest, LinesOfOtherLevelsAndWordsAreNotCounted) {
  SetLog(
      "#DEBUG# - Major: a\r\n#ERROR# - Major: a\r\n#WARNING# - major: a\r\n"
      "#WARNING# -  Major: a\r\n #WARNING# - Major: a\r\n#WARNING# - Major\r\n"
      "#WARNING# - x #WARNING# - Major: a\r\n");
  EXPECT_EQ(Failed(), "       0");
}

TEST_F(AuditEndLogTest, LastLineWithoutLineEndIsCounted) {
  SetLog("#WARNING# - Major: a");
  EXPECT_EQ(Failed(), "       1");
}

TEST_F(AuditEndLogTest, LongLineIsCountedOnce) {
  SetLog("#WARNING# - Major: " + std::string(3000, 'a') + "\r\n");
  EXPECT_EQ(Failed(), "       1");
}

TEST_F(AuditEndLogTest, LaterPieceOfALongLineIsComparedByItself) {
  SetLog(std::string(1022, 'a') + "#WARNING# - Major: b\r\n");
  EXPECT_EQ(Failed(), "       1");
}

TEST_F(AuditEndLogTest, ThirdPieceOfALongLineIsComparedByItself) {
  SetLog(std::string(2044, 'a') + "#WARNING# - Minor: b\r\n");
  EXPECT_EQ(Warned(), "       1");
}

TEST_F(AuditEndLogTest, WordsJustBesideThePieceAreNotCounted) {
  SetLog(std::string(1021, 'a') + "#WARNING# - Major: b\r\n" + std::string(1023, 'a') +
         "#WARNING# - Major: b\r\n");
  EXPECT_EQ(Failed(), "       0");
}

TEST_F(AuditEndLogTest, LineBehindALongLineIsCounted) {
  SetLog(std::string(1022, 'a') + "\r\n#WARNING# - Major: b\r\n");
  EXPECT_EQ(Failed(), "       1");
}

TEST_F(AuditEndLogTest, MismatchIsAWarningInTheLog) {
  LeaveOutDebugLines();
  MakeFiles(L"design", 1);
  SetIdTable("00000001\r\n00000002\r\n00000003\r\n");
  WriteAuditEnd(std::time(nullptr), ProcessRunLog());
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Document count mismatch: expected 3 but only found 1"});
}

TEST_F(AuditEndLogTest, MoreThanListedIsAMismatchToo) {
  LeaveOutDebugLines();
  MakeFiles(L"profile", 2);
  WriteAuditEnd(std::time(nullptr), ProcessRunLog());
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Document count mismatch: expected 0 but only found 2"});
}

TEST_F(AuditEndLogTest, FailedDocumentsMakeUpForMissingFiles) {
  LeaveOutDebugLines();
  MakeFiles(L"data", 1);
  SetIdTable("00000001\r\n00000002\r\n");
  SetLog("#WARNING# - Major: a\r\n");
  WriteAuditEnd(std::time(nullptr), ProcessRunLog());
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Major: a"});
}

TEST_F(AuditEndLogTest, LogThatDisappearsMidwayIsBegunAnewAndTheNumbersDoNotAgree) {
  LeaveOutDebugLines();
  MakeFiles(L"data", 1);
  SetIdTable("00000001\r\n00000002\r\n00000003\r\n");
  LogWarning(L"Major: a");
  std::filesystem::remove(PathOf(L"log.txt"));
  LogWarning(L"Major: b");
  WriteAuditEnd(std::time(nullptr), ProcessRunLog());
  EXPECT_EQ(LogLines(),
            (Lines{"#WARNING# - Major: b",
                   "#WARNING# - Document count mismatch: expected 3 but only found 2"}));
}

TEST_F(AuditEndLogTest, WarningsAreNoProcessedDocuments) {
  SetLog("#WARNING# - Minor: a\r\n");
  EXPECT_EQ(EndedWith("Total documents processed"), "       0");
}

TEST_F(AuditEndLogTest, MismatchAloneDoesNotCallForTheLog) {
  SetIdTable("00000001\r\n");
  EXPECT_EQ(LastLine(), "Documents exported with warnings :        0");
}

TEST_F(AuditEndLogTest, FailureAloneCallsForTheLog) {
  SetLog("#WARNING# - Major: a\r\n");
  EXPECT_EQ(LastLine(), "Some documents were not exported successfully. See log.txt for details.");
}

TEST_F(AuditEndLogTest, WarningAloneCallsForTheLog) {
  SetLog("#WARNING# - Minor: a\r\n");
  EXPECT_EQ(LastLine(), "Some documents were not exported successfully. See log.txt for details.");
}

TEST_F(AuditEndLogTest, AuditFileThatCannotBeOpenedIsSilent) {
  LeaveOutDebugLines();
  MakeFolder(PathOf(L"audit.txt"));
  WriteAuditEnd(std::time(nullptr), ProcessRunLog());
  EXPECT_EQ(LogLines(), Lines());
}

}  // namespace
}  // namespace larkspan
