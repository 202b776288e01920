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
                    "PROGRESS: Exporting database properties", "PROGRESS: Scanning documents",
                    "PROGRESS: DOCCOUNT: 44"};
  for (const std::string& noteId : OutputLines(L"idtable.txt")) {
    expected.push_back("PROGRESS: DOCUMENT: " + noteId);
  }
  std::string bytes;
  for (const std::string& line : expected) bytes += line + "\r\n";
  EXPECT_EQ(expected.size(), 48u);
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
            "PROGRESS: Scanning documents\r\nPROGRESS: DOCCOUNT: 0\r\n");
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "empty-archive"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ArchiveExportSystemTest, AnEmptyDatabaseGivesAPlainExportWithoutNotes) {
  run_.Export(L"empty.nsf", {});
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "empty-plain"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ArchiveExportSystemTest, NoViewIsAcceptedAndChangesNothingWhereThereAreNoViews) {
  run_.AddDatabase(L"two.nsf", DocumentsJson(2));
  run_.Export(L"two.nsf", {L"-archive"});
  OutputTree withViews = run_.Tree();
  ExportRun other;
  other.AddDatabase(L"two.nsf", DocumentsJson(2));
  EXPECT_EQ(other.Export(L"two.nsf", {L"-archive", L"-noview"}).exitCode, 0u);
  OutputTree withoutViews = other.Tree();
  withViews["audit.txt"] = MaskAuditTimes(withViews["audit.txt"]);
  withoutViews["audit.txt"] = MaskAuditTimes(withoutViews["audit.txt"]);
  EXPECT_EQ(DescribeDifferences(withViews, withoutViews), "");
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
