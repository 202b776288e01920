// Whole runs of supervisor and workers on a disk that is full or files that another program holds,
// at a chosen operation.
#include "tests/support/FileBytes.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

const Lines kBothDocuments = {"data/00000902.dxl", "data/00000906.dxl"};
const Lines kSecondDocument = {"data/00000906.dxl"};

struct FaultyRun {
  const char* name;
  const char* plan;
  Lines log;
  Lines exported;
  ClosingCounts counts;
};

// An archive of two documents. The access control list is the first file that is written as
// temp.tmp.
class FaultyRunSystemTest : public SystemTest, public ::testing::WithParamInterface<FaultyRun> {};

TEST_P(FaultyRunSystemTest, TellsWhatItLostAndGoesOn) {
  run_.AddDatabase(L"two.nsf", DocumentsJson(2));
  run_.UseFaultyFiles(GetParam().plan);
  EXPECT_EQ(run_.Export(L"two.nsf", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(LogLines(), GetParam().log);
  EXPECT_EQ(FilesIn("data"), GetParam().exported);
  const Lines end = ClosingLines(GetParam().counts);
  EXPECT_EQ(Tail(AuditLines(), end.size()), end);
  for (const wchar_t* name : {L"temp.tmp", L"marker.txt"}) EXPECT_FALSE(run_.HasOutputFile(name));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

constexpr ClosingCounts kNothingLost{.listed = 2, .data = 2};
constexpr ClosingCounts kFirstLost{.listed = 2, .data = 1, .failed = 1};

const Lines kNotWritten = {
    "#WARNING# - Major: Error exporting note 00000902 (Error writing to file)"};
const Lines kNotMoved = {
    "#WARNING# - Unable to move DXL file into place (tried retry)",
    "#WARNING# - Major: Error exporting note 00000902 (File cannot be renamed)"};
const Lines kNotListed = {"#ERROR# - Unable to save document list"};

INSTANTIATE_TEST_SUITE_P(
    Faults, FaultyRunSystemTest,
    ::testing::Values(
        FaultyRun{"DiskFullInADocument", "write temp.tmp 2 diskFull 10", kNotWritten,
                  kSecondDocument, kFirstLost},
        FaultyRun{"DiskFullAtTheCloseOfADocument", "close temp.tmp 2 diskFull", kNotWritten,
                  kSecondDocument, kFirstLost},
        FaultyRun{"DiskFullInTheAcl",
                  "write temp.tmp 1 diskFull",
                  {"#WARNING# - Error exporting ACL (Error writing to file)"},
                  kBothDocuments,
                  kNothingLost},
        FaultyRun{"AMoveThatFailsOnce",
                  "move 00000902.dxl 1 sharingViolation",
                  {},
                  kBothDocuments,
                  kNothingLost},
        FaultyRun{"AMoveThatFailsFiveTimes", "move 00000902.dxl 1-5 sharingViolation", kNotMoved,
                  kSecondDocument, kFirstLost},
        FaultyRun{"AFolderThatCannotBeMade",
                  "folder profile 1 accessDenied",
                  {},
                  kBothDocuments,
                  kNothingLost},
        FaultyRun{"DiskFullInTheMarkerOnce",
                  "write marker.txt 1 diskFull 4",
                  {},
                  kBothDocuments,
                  kNothingLost},
        FaultyRun{"DiskFullInTheList", "write idtable.txt 2 diskFull", kNotListed, {}, {}},
        FaultyRun{
            "DiskFullAtTheCloseOfTheList", "close idtable.txt 1 diskFull", kNotListed, {}, {}},
        FaultyRun{"DiskFullInTheIndex",
                  "write unidindex.txt * diskFull",
                  {},
                  kBothDocuments,
                  kNothingLost},
        FaultyRun{"AnIndexThatIsHeld",
                  "open unidindex.txt * sharingViolation",
                  {},
                  kBothDocuments,
                  kNothingLost}),
    [](const auto& test) { return std::string(test.param.name); });

class FaultyFilesSystemTest : public SystemTest {
 protected:
  ProgramResult Export(const std::string& plan, const std::vector<std::wstring>& arguments) {
    run_.AddDatabase(L"two.nsf", DocumentsJson(2, "\"chunkBytes\": 100, "));
    run_.UseFaultyFiles(plan);
    return run_.Export(L"two.nsf", arguments);
  }
};

TEST_F(FaultyFilesSystemTest, AShortWriteSaysHowMuchWasWritten) {
  MakeFolder(Path(L"data"));
  WriteBytes(Path(L"idtable.txt"), "00000902\r\n");
  Export("write temp.tmp 2 diskFull 10", {L"-archive", L"-debug", L"-l", L"1"});
  EXPECT_EQ(LogLines(),
            (Lines{"#DEBUG# - Only wrote 10 bytes of 100 to temp file: temp.tmp",
                   "#WARNING# - Major: Error exporting note 00000902 (Error writing to file)",
                   "#DEBUG# - Trying to NotesTerm", "#DEBUG# - NotesTermed",
                   "#DEBUG# - Exiting via SEH finally"}));
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
}

TEST_F(FaultyFilesSystemTest, AFolderThatCannotBeMadeLosesItsNotes) {
  Export("folder data 1 accessDenied", {L"-archive"});
  EXPECT_EQ(LogLines(),
            (Lines{"#WARNING# - Unable to move DXL file into place (tried retry)",
                   "#WARNING# - Major: Error exporting note 00000902 (File cannot be renamed)",
                   "#WARNING# - Unable to move DXL file into place (tried retry)",
                   "#WARNING# - Major: Error exporting note 00000906 (File cannot be renamed)"}));
  EXPECT_FALSE(run_.HasOutputFile(L"data"));
}

TEST_F(FaultyFilesSystemTest, ALogThatCannotBeWrittenMakesLoggingSilent) {
  EXPECT_EQ(Export("write log.txt * diskFull", {L"-archive", L"-debug"}).exitCode, 0u);
  EXPECT_EQ(run_.Log(), "");
  EXPECT_EQ(FilesIn("data"), kBothDocuments);
  EXPECT_EQ(Tail(AuditLines(), 11), ClosingLines({.listed = 2, .data = 2}));
}

TEST_F(FaultyFilesSystemTest, AnAuditReportThatCannotBeWrittenIsLeftOutInSilence) {
  EXPECT_EQ(Export("write audit.txt * diskFull", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(run_.OutputFile(L"audit.txt"), "");
  EXPECT_EQ(LogLines(), Lines());
  EXPECT_EQ(FilesIn("data"), kBothDocuments);
}

// As a folder is that permits reading only.
TEST_F(FaultyFilesSystemTest, AFolderInWhichNothingMayBeMadeEndsTheRunInSilence) {
  const ProgramResult result =
      Export("open * * accessDenied; folder * * accessDenied", {L"-archive", L"-debug"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(result.standardOutput.find("DOCUMENT"), std::string::npos);
  EXPECT_TRUE(run_.Tree().empty());
  EXPECT_EQ(run_.LedgerFault(1), "");
}

}  // namespace
}  // namespace larkspan::testing
