// Exports into a folder that holds the files of an earlier run.
#include <filesystem>

#include "tests/support/FileBytes.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class UsedFolderSystemTest : public SystemTest {
 protected:
  std::wstring InOutput(const std::wstring& name) const { return run_.output() + L"\\" + name; }

  void Export(const std::vector<std::wstring>& arguments) {
    run_.AddDatabase(L"one.nsf", DocumentsJson(1));
    EXPECT_EQ(run_.Export(L"one.nsf", arguments).exitCode, 0u);
  }
};

TEST_F(UsedFolderSystemTest, AFileUnderAFinalNameIsNeverReplaced) {
  std::filesystem::create_directory(InOutput(L"data"));
  WriteBytes(InOutput(L"data\\00000902.dxl"), "from an earlier run");
  Export({L"-archive", L"-debug"});
  EXPECT_EQ(run_.OutputFile(L"data\\00000902.dxl"), "from an earlier run");
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
  const Lines log = LogLines();
  for (int attempt = 1; attempt <= 4; ++attempt) {
    EXPECT_EQ(
        CountLines(log, "#DEBUG# - Retrying move DXL file into place: " + std::to_string(attempt)),
        1);
  }
  EXPECT_FALSE(Contains(log, "#DEBUG# - Retrying move DXL file into place: 5"));
  EXPECT_EQ(CountLines(log, "#WARNING# - Unable to move DXL file into place (tried retry)"), 1);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(UsedFolderSystemTest, AFileThatCannotBePlacedMakesItsNoteAFailedOne) {
  std::filesystem::create_directory(InOutput(L"data"));
  WriteBytes(InOutput(L"data\\00000902.dxl"), "from an earlier run");
  Export({L"-archive"});
  const Lines log = LogLines();
  ASSERT_GE(log.size(), 2u);
  EXPECT_EQ(log[0], "#WARNING# - Unable to move DXL file into place (tried retry)");
  EXPECT_TRUE(log[1].starts_with("#WARNING# - Major: Error exporting note 00000902 ("));
}

TEST_F(UsedFolderSystemTest, WhatACrashedWorkerLeftInTheTemporaryFileIsGoneAtTheFirstAttempt) {
  WriteBytes(InOutput(L"temp.tmp"), "half a document");
  Export({L"-archive", L"-debug"});
  EXPECT_EQ(run_.Log().find("Retrying"), std::string::npos);
  EXPECT_EQ(run_.OutputFile(L"acl.dxl").find("half a document"), std::string::npos);
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
}

TEST_F(UsedFolderSystemTest, OldIndexFilesAreReplaced) {
  WriteBytes(InOutput(L"idtable.txt"), "00000001\r\n00000002\r\n");
  WriteBytes(InOutput(L"unidindex.txt"), "00000001,old\r\n");
  Export({L"-archive"});
  EXPECT_EQ(run_.OutputFile(L"idtable.txt"), "00000902\r\n");
  EXPECT_EQ(run_.OutputFile(L"unidindex.txt").substr(0, 9), "00000902,");
  EXPECT_EQ(OutputLines(L"unidindex.txt").size(), 1u);
}

TEST_F(UsedFolderSystemTest, WithoutArchiveAnOldUnidIndexStays) {
  WriteBytes(InOutput(L"unidindex.txt"), "00000001,old\r\n");
  Export({});
  EXPECT_EQ(run_.OutputFile(L"unidindex.txt"), "00000001,old\r\n");
}

TEST_F(UsedFolderSystemTest, FoldersThatExistKeepTheirContent) {
  std::filesystem::create_directory(InOutput(L"design"));
  WriteBytes(InOutput(L"design\\kept.dxl"), "kept");
  Export({L"-archive"});
  EXPECT_EQ(run_.OutputFile(L"design\\kept.dxl"), "kept");
  EXPECT_TRUE(Contains(AuditLines(), "Design :        1"));
}

TEST_F(UsedFolderSystemTest, AMarkerOfAnEarlierRunIsReplacedByTheFirstNotes) {
  WriteBytes(InOutput(L"marker.txt"), "00000700\r\n");
  Export({L"-archive"});
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_FALSE(run_.HasOutputFile(L"log.txt"));
}

TEST_F(UsedFolderSystemTest, LogAndAuditReportGrow) {
  WriteBytes(InOutput(L"log.txt"), "#WARNING# - Minor: from an earlier run\r\n");
  WriteBytes(InOutput(L"audit.txt"), "earlier\r\n");
  Export({L"-archive"});
  EXPECT_EQ(OutputLines(L"audit.txt").front(), "earlier");
  EXPECT_EQ(run_.Log(), "#WARNING# - Minor: from an earlier run\r\n");
  EXPECT_TRUE(Contains(AuditLines(), "Documents exported with warnings :        1"));
}

}  // namespace
}  // namespace larkspan::testing
