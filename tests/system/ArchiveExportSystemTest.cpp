// A whole export of healthy databases: every file, every byte.
#include <filesystem>

#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class ArchiveExportSystemTest : public SystemTest {
 protected:
  // Exports a database of five documents and takes the last two of them away again.
  void ExportAllButTheLastTwo() {
    run_.AddDatabase(L"five.nsf", DocumentsJson(5));
    run_.Export(L"five.nsf", {L"-archive"});
    std::filesystem::remove(run_.output() + L"\\data\\0000090E.dxl");
    std::filesystem::remove(run_.output() + L"\\data\\00000912.dxl");
    std::filesystem::remove(run_.output() + L"\\unidindex.txt");
  }
};

TEST_F(ArchiveExportSystemTest, AnArchiveOfTheSampleIsByteForByteAsExpected) {
  const ProgramResult result = run_.Export(L"sample.nsf", {L"-s", L"<Local>", L"-archive"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "sample-archive"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ArchiveExportSystemTest, AnArchiveSendsOneProgressLineAStepAndANote) {
  const ProgramResult result = run_.Export(L"sample.nsf", {L"-s", L"<Local>", L"-archive"});
  Lines expected = {"PROGRESS: Opening 'sample.nsf' on '<Local>'",
                    "PROGRESS: Exporting database properties", "PROGRESS: VIEWCOUNT: 14"};
  // Hidden views are counted and named like the others.
  for (const char* view :
       {"0000012E", "00000132", "00000136", "0000014E", "00000152", "00000156", "0000015A",
        "0000015E", "00000162", "00000166", "0000016A", "0000016E", "00000172", "00000176"}) {
    expected.push_back(std::string("PROGRESS: VIEW: ") + view);
  }
  expected.push_back("PROGRESS: Scanning documents");
  expected.push_back("PROGRESS: DOCCOUNT: 55");
  for (const std::string& noteId : OutputLines(L"idtable.txt")) {
    expected.push_back("PROGRESS: DOCUMENT: " + noteId);
  }
  std::string bytes;
  for (const std::string& line : expected) bytes += line + "\r\n";
  EXPECT_EQ(expected.size(), 74u);
  EXPECT_EQ(result.standardOutput, bytes);
}

TEST_F(ArchiveExportSystemTest, APlainExportOfTheSampleIsByteForByteAsExpected) {
  const ProgramResult result = run_.Export(L"sample.nsf", {});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "sample-plain"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ArchiveExportSystemTest, APlainExportIsSilent) {
  EXPECT_EQ(run_.Export(L"sample.nsf", {L"-debug"}).standardOutput, "");
  EXPECT_FALSE(run_.Log().empty());
}

TEST_F(ArchiveExportSystemTest, AnEmptyDatabaseGivesAnArchiveWithoutNotes) {
  const ProgramResult result = run_.Export(L"empty.nsf", {L"-archive"});
  EXPECT_EQ(result.standardOutput,
            "PROGRESS: Opening 'empty.nsf' on ''\r\nPROGRESS: Exporting database properties\r\n"
            "PROGRESS: VIEWCOUNT: 0\r\nPROGRESS: Scanning documents\r\n"
            "PROGRESS: DOCCOUNT: 0\r\n");
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "empty-archive"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ArchiveExportSystemTest, AnEmptyDatabaseGivesAPlainExportWithoutNotes) {
  run_.Export(L"empty.nsf", {});
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "empty-plain"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ArchiveExportSystemTest, AWorkerAfterANoteExportsOnlyTheNotesBehindIt) {
  ExportAllButTheLastTwo();
  const ProgramResult result = run_.Export(L"five.nsf", {L"-archive", L"-l", L"0000090A"});
  EXPECT_EQ(result.standardOutput,
            "PROGRESS: Opening 'five.nsf' on ''\r\nPROGRESS: DOCUMENT: 0000090E\r\n"
            "PROGRESS: DOCUMENT: 00000912\r\n");
  EXPECT_EQ(FilesIn("data"), (Lines{"data/00000902.dxl", "data/00000906.dxl", "data/0000090A.dxl",
                                    "data/0000090E.dxl", "data/00000912.dxl"}));
  EXPECT_EQ(OutputLines(L"unidindex.txt").size(), 2u);
  EXPECT_EQ(run_.LedgerFault(2), "");
}

TEST_F(ArchiveExportSystemTest, AWorkerAfterANoteDoesNothingThatIsDoneOncePerDatabase) {
  ExportAllButTheLastTwo();
  const std::string acl = run_.OutputFile(L"acl.dxl");
  const Lines audit = AuditLines();
  run_.Export(L"five.nsf", {L"-archive", L"-l", L"0000090A"});
  EXPECT_EQ(Calls(1, "DXLExportACL"), 0);
  EXPECT_EQ(Calls(1, "NSFSearchExtended3"), 0);
  EXPECT_EQ(Calls(1, "SECKFMGetUserName"), 0);
  EXPECT_EQ(run_.OutputFile(L"acl.dxl"), acl);
  EXPECT_EQ(AuditLines(), Join({audit, {"Database size after archive : 65536"}}));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ArchiveExportSystemTest, AWorkerAfterTheLastNoteExportsNothingAndLeavesNoMarker) {
  ExportAllButTheLastTwo();
  const ProgramResult result = run_.Export(L"five.nsf", {L"-archive", L"-l", L"912"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(result.standardOutput, "PROGRESS: Opening 'five.nsf' on ''\r\n");
  EXPECT_EQ(FilesIn("data").size(), 3u);
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_EQ(run_.LedgerFault(2), "");
}

TEST_F(ArchiveExportSystemTest, AWorkerAfterANoteThatFindsNoListEndsWithAnError) {
  run_.Export(L"empty.nsf", {L"-archive", L"-l", L"902"});
  EXPECT_EQ(run_.Log(), "#ERROR# - Unable to read document list\r\n");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

}  // namespace
}  // namespace larkspan::testing
