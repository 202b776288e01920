// The closing block of the audit report.
#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>
#include <vector>

#include "base/LocalTime.h"
#include "base/Utf8.h"
#include "report/AuditReport.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"

namespace larkspan {
namespace {

class AuditEndTest : public OutputFolderTest {
 protected:
  void MakeFiles(const std::wstring& folder, int count) {
    MakeFolder(PathOf(folder));
    for (int i = 0; i < count; ++i) {
      WriteBytes(PathOf(folder + L"\\" + std::to_wstring(i) + L".dxl"), "");
    }
  }

  void SetLog(const std::string& bytes) { WriteBytes(PathOf(L"log.txt"), bytes); }

  void SetIdTable(const std::string& bytes) { WriteBytes(PathOf(L"idtable.txt"), bytes); }

  // The text behind "label: " in the closing block, or "absent".
  std::string EndedWith(const std::string& label) {
    WriteAuditEnd(std::time(nullptr));
    for (const std::string& line : ReadLines(PathOf(L"audit.txt"))) {
      if (line.starts_with(label + ": ")) return line.substr(label.size() + 2);
    }
    return "absent";
  }

  std::string Listed() { return EndedWith("Database total documents "); }
  std::string Failed() { return EndedWith("Failed total documents   "); }
  std::string Warned() { return EndedWith("Documents exported with warnings "); }

  std::string LastLine() {
    WriteAuditEnd(std::time(nullptr));
    return ReadLines(PathOf(L"audit.txt")).back();
  }
};

// The closing block without its two lines about time.
std::string BlockWithoutTimes(std::string block) {
  const std::size_t firstEnd = block.find("\r\n");
  const std::size_t secondEnd = block.find("\r\n", firstEnd + 1);
  return block.substr(secondEnd + 2);
}

TEST_F(AuditEndTest, BlockOfACleanRun) {
  MakeFiles(L"data", 2);
  MakeFiles(L"design", 1);
  MakeFiles(L"profile", 0);
  SetIdTable("00000001\r\n00000002\r\n00000003\r\n");
  WriteAuditEnd(std::time(nullptr));
  EXPECT_EQ(BlockWithoutTimes(ReadBytes(PathOf(L"audit.txt"))),
            "Database total documents :        3\r\n"
            "Exported Document Counts\r\n"
            "Data   :        2\r\n"
            "Design :        1\r\n"
            "Profile:        0\r\n"
            "Exported total documents :        3\r\n"
            "Failed total documents   :        0\r\n"
            "Total documents processed:        3\r\n"
            "Documents exported with warnings :        0\r\n");
}

TEST_F(AuditEndTest, BlockOfARunWithLosses) {
  MakeFiles(L"data", 1);
  MakeFiles(L"design", 2);
  MakeFiles(L"profile", 3);
  SetIdTable("00000001\r\n");
  SetLog("#WARNING# - Major: a\r\n#WARNING# - Minor: b\r\n#WARNING# - Minor: c\r\n");
  WriteAuditEnd(std::time(nullptr));
  EXPECT_EQ(BlockWithoutTimes(ReadBytes(PathOf(L"audit.txt"))),
            "Database total documents :        1\r\n"
            "Exported Document Counts\r\n"
            "Data   :        1\r\n"
            "Design :        2\r\n"
            "Profile:        3\r\n"
            "Exported total documents :        6\r\n"
            "Failed total documents   :        1\r\n"
            "Total documents processed:        7\r\n"
            "Documents exported with warnings :        2\r\n"
            "Some documents were not exported successfully. See log.txt for details.\r\n");
}

TEST_F(AuditEndTest, BlockIsAppendedToWhatIsThere) {
  WriteBytes(PathOf(L"audit.txt"), "Archive started at: then\r\n");
  WriteAuditEnd(std::time(nullptr));
  EXPECT_TRUE(ReadBytes(PathOf(L"audit.txt"))
                  .starts_with("Archive started at: then\r\nArchive ended at: "));
}

TEST_F(AuditEndTest, EndIsTheCurrentLocalTime) {
  const std::time_t before = std::time(nullptr);
  const std::string shown = EndedWith("Archive ended at");
  const std::time_t after = std::time(nullptr);
  bool found = false;
  for (std::time_t time = before; time <= after; ++time) {
    if (WideToUtf8(FormatLocalTime(time)) == shown) found = true;
  }
  EXPECT_TRUE(found) << shown;
}

TEST_F(AuditEndTest, RuntimeIsTheTimeSinceTheStart) {
  const std::time_t before = std::time(nullptr);
  WriteAuditEnd(before - 90);
  const std::time_t after = std::time(nullptr);
  const std::string line = ReadLines(PathOf(L"audit.txt")).at(1);
  const std::string label = "Total runtime (seconds): ";
  ASSERT_TRUE(line.starts_with(label));
  const double seconds = std::atof(line.substr(label.size()).c_str());
  EXPECT_GE(seconds, 90.0);
  EXPECT_LE(seconds, 90.0 + static_cast<double>(after - before));
}

TEST_F(AuditEndTest, RuntimeHasTwoDecimals) {
  const std::string shown = EndedWith("Total runtime (seconds)");
  EXPECT_EQ(shown.find('.'), shown.size() - 3) << shown;
}

TEST_F(AuditEndTest, MissingIdTableCountsAsNone) {
  EXPECT_EQ(Listed(), "       0");
  EXPECT_EQ(LogLines(), Lines{"#DEBUG# - CountInputDocuments fopen failed"});
}

TEST_F(AuditEndTest, EmptyIdTableIsReadToItsEnd) {
  SetIdTable("");
  EXPECT_EQ(Listed(), "       0");
  EXPECT_EQ(LogLines(), Lines{"#DEBUG# - CountInputDocuments succeeded (0)"});
}

TEST_F(AuditEndTest, IdTableIsCounted) {
  LeaveOutDebugLines();
  SetIdTable("0000002A\r\n0000002E\r\nFFFFFFFE\r\n");
  EXPECT_EQ(Listed(), "       3");
}

TEST_F(AuditEndTest, CountOfTheIdTableIsLogged) {
  MakeFiles(L"data", 2);
  SetIdTable("0000002A\r\n0000002E\r\n");
  WriteAuditEnd(std::time(nullptr));
  EXPECT_EQ(LogLines(), Lines{"#DEBUG# - CountInputDocuments succeeded (2)"});
}

TEST_F(AuditEndTest, IdTableWithoutFinalLineEndIsCountedInFull) {
  SetIdTable("0000002A\r\n0000002E");
  EXPECT_EQ(Listed(), "       2");
}

TEST_F(AuditEndTest, IdTableWithTextThatIsNoNumberCountsAsNone) {
  SetIdTable("0000002A\r\nXYZ\r\n0000002E\r\n");
  EXPECT_EQ(Listed(), "       0");
  EXPECT_EQ(LogLines(), Lines{"#DEBUG# - CountInputDocuments terminated read before EOF"});
}

TEST_F(AuditEndTest, MissingFoldersCountAsEmpty) {
  EXPECT_EQ(EndedWith("Exported total documents "), "       0");
}

TEST_F(AuditEndTest, SubfoldersAreNotCounted) {
  MakeFiles(L"data", 1);
  MakeFolder(PathOf(L"data\\sub"));
  EXPECT_EQ(EndedWith("Data   "), "       1");
}

TEST_F(AuditEndTest, FilesOfSubfoldersAreNotCounted) {
  MakeFiles(L"data", 0);
  MakeFiles(L"data\\sub", 2);
  EXPECT_EQ(EndedWith("Data   "), "       0");
}

TEST_F(AuditEndTest, FilesOfAnyNameAreCounted) {
  MakeFiles(L"profile", 1);
  WriteBytes(PathOf(L"profile\\name without dot"), "");
  EXPECT_EQ(EndedWith("Profile"), "       2");
}

TEST_F(AuditEndTest, RawCopiesAreNotCounted) {
  MakeFiles(L"design2", 4);
  EXPECT_EQ(EndedWith("Exported total documents "), "       0");
}

TEST_F(AuditEndTest, ViewsAndFlatFilesAreNotCounted) {
  MakeFiles(L"views", 2);
  WriteBytes(PathOf(L"0000002A.dxl"), "");
  EXPECT_EQ(EndedWith("Exported total documents "), "       0");
}

TEST_F(AuditEndTest, MissingLogCountsAsClean) {
  LeaveOutDebugLines();
  EXPECT_EQ(LastLine(), "Documents exported with warnings :        0");
}

TEST_F(AuditEndTest, MajorLinesCountAsFailed) {
  SetLog("#WARNING# - Major: a\r\n#WARNING# - x\r\n#WARNING# - Major:\r\n");
  EXPECT_EQ(Failed(), "       2");
}

TEST_F(AuditEndTest, MinorLinesCountAsWarnings) {
  SetLog("#WARNING# - Minor: a\r\n#WARNING# - x\r\n#WARNING# - Minor:\r\n");
  EXPECT_EQ(Warned(), "       2");
}

TEST_F(AuditEndTest, MinorLinesDoNotCountAsFailed) {
  SetLog("#WARNING# - Minor: a\r\n");
  EXPECT_EQ(Failed(), "       0");
}

TEST_F(AuditEndTest, MajorLinesDoNotCountAsWarnings) {
  SetLog("#WARNING# - Major: a\r\n");
  EXPECT_EQ(Warned(), "       0");
}

TEST_F(AuditEndTest, LinesOfOtherLevelsAndWordsAreNotCounted) {
  SetLog(
      "#DEBUG# - Major: a\r\n#ERROR# - Major: a\r\n#WARNING# - major: a\r\n"
      "#WARNING# -  Major: a\r\n #WARNING# - Major: a\r\n#WARNING# - Major\r\n"
      "#WARNING# - x #WARNING# - Major: a\r\n");
  EXPECT_EQ(Failed(), "       0");
}

TEST_F(AuditEndTest, LastLineWithoutLineEndIsCounted) {
  SetLog("#WARNING# - Major: a");
  EXPECT_EQ(Failed(), "       1");
}

TEST_F(AuditEndTest, LongLineIsCountedOnce) {
  SetLog("#WARNING# - Major: " + std::string(3000, 'a') + "\r\n");
  EXPECT_EQ(Failed(), "       1");
}

TEST_F(AuditEndTest, LaterPieceOfALongLineIsComparedByItself) {
  SetLog(std::string(1022, 'a') + "#WARNING# - Major: b\r\n");
  EXPECT_EQ(Failed(), "       1");
}

TEST_F(AuditEndTest, ThirdPieceOfALongLineIsComparedByItself) {
  SetLog(std::string(2044, 'a') + "#WARNING# - Minor: b\r\n");
  EXPECT_EQ(Warned(), "       1");
}

TEST_F(AuditEndTest, WordsJustBesideThePieceAreNotCounted) {
  SetLog(std::string(1021, 'a') + "#WARNING# - Major: b\r\n" + std::string(1023, 'a') +
         "#WARNING# - Major: b\r\n");
  EXPECT_EQ(Failed(), "       0");
}

TEST_F(AuditEndTest, LineBehindALongLineIsCounted) {
  SetLog(std::string(1022, 'a') + "\r\n#WARNING# - Major: b\r\n");
  EXPECT_EQ(Failed(), "       1");
}

TEST_F(AuditEndTest, MismatchIsAWarningInTheLog) {
  LeaveOutDebugLines();
  MakeFiles(L"design", 1);
  SetIdTable("00000001\r\n00000002\r\n00000003\r\n");
  WriteAuditEnd(std::time(nullptr));
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Document count mismatch: expected 3 but only found 1"});
}

TEST_F(AuditEndTest, MoreThanListedIsAMismatchToo) {
  LeaveOutDebugLines();
  MakeFiles(L"profile", 2);
  WriteAuditEnd(std::time(nullptr));
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Document count mismatch: expected 0 but only found 2"});
}

TEST_F(AuditEndTest, FailedDocumentsMakeUpForMissingFiles) {
  LeaveOutDebugLines();
  MakeFiles(L"data", 1);
  SetIdTable("00000001\r\n00000002\r\n");
  SetLog("#WARNING# - Major: a\r\n");
  WriteAuditEnd(std::time(nullptr));
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Major: a"});
}

TEST_F(AuditEndTest, WarningsAreNoProcessedDocuments) {
  SetLog("#WARNING# - Minor: a\r\n");
  EXPECT_EQ(EndedWith("Total documents processed"), "       0");
}

TEST_F(AuditEndTest, MismatchAloneDoesNotCallForTheLog) {
  SetIdTable("00000001\r\n");
  EXPECT_EQ(LastLine(), "Documents exported with warnings :        0");
}

TEST_F(AuditEndTest, FailureAloneCallsForTheLog) {
  SetLog("#WARNING# - Major: a\r\n");
  EXPECT_EQ(LastLine(), "Some documents were not exported successfully. See log.txt for details.");
}

TEST_F(AuditEndTest, WarningAloneCallsForTheLog) {
  SetLog("#WARNING# - Minor: a\r\n");
  EXPECT_EQ(LastLine(), "Some documents were not exported successfully. See log.txt for details.");
}

TEST_F(AuditEndTest, AuditFileThatCannotBeOpenedIsSilent) {
  LeaveOutDebugLines();
  MakeFolder(PathOf(L"audit.txt"));
  WriteAuditEnd(std::time(nullptr));
  EXPECT_EQ(LogLines(), Lines());
}

}  // namespace
}  // namespace larkspan
