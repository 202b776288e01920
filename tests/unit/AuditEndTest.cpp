// The closing block of the audit report: its form, its times, the documents listed and exported.
#include "tests/support/AuditEndTest.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "base/LocalTime.h"
#include "base/Utf8.h"
#include "supervision/AuditBlocks.h"

namespace larkspan {
namespace {

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
  WriteAuditEnd(std::time(nullptr), ProcessRunLog());
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
  WriteAuditEnd(std::time(nullptr), ProcessRunLog());
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

TEST_F(AuditEndTest, AsManyFailuresAsWarningsAreLossesToo) {
  SetLog("#WARNING# - Major: a\r\n#WARNING# - Minor: b\r\n");
  WriteAuditEnd(std::time(nullptr), ProcessRunLog());
  EXPECT_EQ(ReadLines(PathOf(L"audit.txt")).back(),
            "Some documents were not exported successfully. See log.txt for details.");
}

TEST_F(AuditEndTest, BlockIsAppendedToWhatIsThere) {
  WriteBytes(PathOf(L"audit.txt"), "Archive started at: then\r\n");
  WriteAuditEnd(std::time(nullptr), ProcessRunLog());
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
  WriteAuditEnd(before - 90, ProcessRunLog());
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
  WriteAuditEnd(std::time(nullptr), ProcessRunLog());
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

}  // namespace
}  // namespace larkspan
