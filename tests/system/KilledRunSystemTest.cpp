// What a new run, or a worker started by hand, makes of a folder whose run was ended from outside.
#include <filesystem>

#include "tests/support/FileBytes.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

constexpr char kFormWithBody[] =
    R"({"sizeKilobytes": 64, "notes": [{"id": "00000202", "class": "form", "items": [
        {"name": "Title", "text": "Form"}, {"name": "$Body", "richText": ["Field"]}]}]})";

class KilledRunSystemTest : public SystemTest {
 protected:
  // What lies there when both processes die inside the note 00000906.
  void LeaveHalfARun() {
    run_.AddDatabase(L"x.nsf", DocumentsJson(3));
    MakeFolder(Path(L"data"));
    WriteBytes(Path(L"data\\00000902.dxl"), "whole");
    WriteBytes(Path(L"temp.tmp"), "half a note");
    WriteBytes(Path(L"marker.txt"), "00000906\r\n");
    WriteBytes(Path(L"idtable.txt"), "00000902\r\n00000906\r\n0000090A\r\n");
  }
};

TEST_F(KilledRunSystemTest, ANewRunExportsWhatIsMissingAndTellsOfEachNoteThatIsThere) {
  LeaveHalfARun();
  run_.Export(L"x.nsf", {L"-archive"});
  EXPECT_EQ(LogLines(),
            (Lines{"#WARNING# - Unable to move DXL file into place (tried retry)",
                   "#WARNING# - Major: Error exporting note 00000902 (File cannot be renamed)",
                   "#WARNING# - Document count mismatch: expected 3 but only found 4"}));
  EXPECT_EQ(FilesIn("data"),
            (Lines{"data/00000902.dxl", "data/00000906.dxl", "data/0000090A.dxl"}));
  EXPECT_EQ(run_.OutputFile(L"data\\00000902.dxl"), "whole");
  EXPECT_EQ(OutputLines(L"unidindex.txt").size(), 3u);
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
}

TEST_F(KilledRunSystemTest, ANewRunDoesNotComeToTheRawCopyOfANoteThatIsThere) {
  run_.AddDatabase(L"x.nsf", kFormWithBody);
  MakeFolder(Path(L"design"));
  WriteBytes(Path(L"design\\00000202.dxl"), "whole");
  run_.Export(L"x.nsf", {L"-archive"});
  EXPECT_TRUE(Contains(
      LogLines(), "#WARNING# - Major: Error exporting note 00000202 (File cannot be renamed)"));
  EXPECT_EQ(FilesIn("design2"), Lines());
}

TEST_F(KilledRunSystemTest, AWorkerByHandGoesOnAfterItsNoteAndClearsUp) {
  LeaveHalfARun();
  run_.Export(L"x.nsf", {L"-archive", L"-l", L"00000906"});
  EXPECT_EQ(LogLines(), Lines());
  EXPECT_EQ(FilesIn("data"), (Lines{"data/00000902.dxl", "data/0000090A.dxl"}));
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_EQ(AuditLines(), Lines{"Database size after archive : 65536"});
}

TEST_F(KilledRunSystemTest, AWorkerByHandThatHasNoNoteLeftLeavesTheMarkerOfAnother) {
  LeaveHalfARun();
  run_.Export(L"x.nsf", {L"-archive", L"-l", L"0000090A"});
  EXPECT_EQ(run_.OutputFile(L"marker.txt"), "00000906\r\n");
}

TEST_F(KilledRunSystemTest, AResumedWorkerThatEndsInItsSetUpLeavesTheHalfFile) {
  LeaveHalfARun();
  std::filesystem::remove(Path(L"idtable.txt"));
  run_.Export(L"x.nsf", {L"-archive", L"-l", L"00000906"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to read document list"});
  EXPECT_EQ(run_.OutputFile(L"temp.tmp"), "half a note");
}

}  // namespace
}  // namespace larkspan::testing
