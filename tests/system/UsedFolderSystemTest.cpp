// An output folder that is not empty: what is old stays, but for the files that belong to one run.
#include <chrono>

#include "tests/support/FileBytes.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class UsedFolderSystemTest : public SystemTest {
 protected:
  UsedFolderSystemTest() { run_.AddDatabase(L"x.nsf", DocumentsJson(1)); }
};

TEST_F(UsedFolderSystemTest, ANoteWhoseFileIsThereFailsAfterFiveMovesAndLeavesTheOldFile) {
  MakeFolder(Path(L"data"));
  WriteBytes(Path(L"data\\00000902.dxl"), "old");
  constexpr std::chrono::seconds kFourPauses{4};
  const auto start = std::chrono::steady_clock::now();
  run_.Export(L"x.nsf", {L"-archive", L"-debug", L"-l", L"0"});
  EXPECT_GE(std::chrono::steady_clock::now() - start, kFourPauses);
  EXPECT_EQ(LogLines(),
            (Lines{"#DEBUG# - Retrying move DXL file into place: 1",
                   "#DEBUG# - Retrying move DXL file into place: 2",
                   "#DEBUG# - Retrying move DXL file into place: 3",
                   "#DEBUG# - Retrying move DXL file into place: 4",
                   "#WARNING# - Unable to move DXL file into place (tried retry)",
                   "#WARNING# - Major: Error exporting note 00000902 (File cannot be renamed)",
                   "#DEBUG# - Trying to NotesTerm", "#DEBUG# - NotesTermed",
                   "#DEBUG# - Exiting via SEH finally"}));
  EXPECT_EQ(run_.OutputFile(L"data\\00000902.dxl"), "old");
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(UsedFolderSystemTest, AnAccessControlListThatIsThereIsLeftAndTheNotesAreExported) {
  WriteBytes(Path(L"acl.dxl"), "old");
  run_.Export(L"x.nsf", {L"-archive"});
  EXPECT_EQ(LogLines(), (Lines{"#WARNING# - Unable to move DXL file into place (tried retry)",
                               "#WARNING# - Error exporting ACL (File cannot be renamed)"}));
  EXPECT_EQ(run_.OutputFile(L"acl.dxl"), "old");
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
}

TEST_F(UsedFolderSystemTest, FilesOfOneRunAreBegunAfreshAndTheRestOfTheFolderStays) {
  WriteBytes(Path(L"temp.tmp"), "half a note");
  WriteBytes(Path(L"idtable.txt"), "00000FF2\r\n");
  WriteBytes(Path(L"unidindex.txt"), "00000FF2,0\r\n");
  WriteBytes(Path(L"notes of mine.txt"), "mine");
  run_.Export(L"x.nsf", {L"-archive", L"-debug"});
  EXPECT_EQ(run_.OutputFile(L"idtable.txt"), "00000902\r\n");
  EXPECT_EQ(run_.OutputFile(L"unidindex.txt"), "00000902,C12583D0004D1A2B2FB62C6200000902\r\n");
  EXPECT_EQ(run_.OutputFile(L"notes of mine.txt"), "mine");
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
  EXPECT_EQ(run_.OutputFile(L"acl.dxl").find("half"), std::string::npos);
  EXPECT_EQ(run_.Log().find("Retrying"), std::string::npos);
}

TEST_F(UsedFolderSystemTest, AMarkerLeftBehindIsReplacedByTheFirstNote) {
  WriteBytes(Path(L"marker.txt"), "00000FF2\r\n");
  run_.Export(L"x.nsf", {L"-archive"});
  EXPECT_EQ(LogLines(), Lines());
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
}

TEST_F(UsedFolderSystemTest, APlainExportLeavesAnOldIndexAlone) {
  WriteBytes(Path(L"unidindex.txt"), "old");
  run_.Export(L"x.nsf", {});
  EXPECT_EQ(run_.OutputFile(L"unidindex.txt"), "old");
}

TEST_F(UsedFolderSystemTest, SubfoldersKeepTheirFilesWhichTheAuditReportCounts) {
  MakeFolder(Path(L"design"));
  MakeFolder(Path(L"design\\below"));
  WriteBytes(Path(L"design\\old.dxl"), "old");
  run_.Export(L"x.nsf", {L"-archive"});
  EXPECT_EQ(run_.OutputFile(L"design\\old.dxl"), "old");
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Document count mismatch: expected 1 but only found 2"});
  EXPECT_EQ(Tail(AuditLines(), 11), ClosingLines({.listed = 1, .data = 1, .design = 1}));
}

TEST_F(UsedFolderSystemTest, AFurtherRunAppendsToLogAndAuditAndCountsOverAll) {
  WriteBytes(Path(L"log.txt"), "#WARNING# - Major: of an earlier run\r\n");
  WriteBytes(Path(L"audit.txt"), "Of an earlier run\r\n");
  run_.Export(L"x.nsf", {L"-archive"});
  EXPECT_EQ(LogLines(),
            (Lines{"#WARNING# - Major: of an earlier run",
                   "#WARNING# - Document count mismatch: expected 1 but only found 2"}));
  EXPECT_EQ(AuditLines().front(), "Of an earlier run");
  EXPECT_EQ(AuditLines().at(1), "Archive started at: *");
  EXPECT_EQ(Tail(AuditLines(), 12), ClosingLines({.listed = 1, .data = 1, .failed = 1}));
}

}  // namespace
}  // namespace larkspan::testing
