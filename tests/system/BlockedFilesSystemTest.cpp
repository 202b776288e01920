// Files that cannot be written: their names are taken by folders, or another program holds them.
#include <windows.h>

#include "tests/support/FileBytes.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class BlockedFilesSystemTest : public SystemTest {
 protected:
  BlockedFilesSystemTest() { run_.AddDatabase(L"x.nsf", DocumentsJson(1)); }
};

TEST_F(BlockedFilesSystemTest, ALogThatCannotBeOpenedMakesLoggingSilent) {
  MakeFolder(Path(L"log.txt"));
  EXPECT_EQ(run_.Export(L"x.nsf", {L"-archive", L"-debug"}).exitCode, 0u);
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
  EXPECT_EQ(Tail(AuditLines(), 11), ClosingLines({.listed = 1, .data = 1}));
}

TEST_F(BlockedFilesSystemTest, ALogThatAnotherProgramHoldsMakesLoggingSilent) {
  WriteBytes(Path(L"log.txt"), "held");
  {
    const UniqueSystemHandle held = Hold(L"log.txt");
    EXPECT_EQ(run_.Export(L"x.nsf", {L"-archive", L"-debug"}).exitCode, 0u);
  }
  EXPECT_EQ(run_.Log(), "held");
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
}

TEST_F(BlockedFilesSystemTest, AnAuditReportThatCannotBeOpenedIsLeftOutInSilence) {
  MakeFolder(Path(L"audit.txt"));
  EXPECT_EQ(run_.Export(L"x.nsf", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(LogLines(), Lines());
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
}

TEST_F(BlockedFilesSystemTest, ADocumentListThatCannotBeSavedEndsTheRun) {
  MakeFolder(Path(L"idtable.txt"));
  EXPECT_EQ(run_.Export(L"x.nsf", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to save document list"});
  EXPECT_EQ(FilesIn("data"), Lines());
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(BlockedFilesSystemTest, AnIndexThatCannotBeOpenedIsLeftOutInSilence) {
  MakeFolder(Path(L"unidindex.txt"));
  run_.Export(L"x.nsf", {L"-archive"});
  EXPECT_EQ(LogLines(), Lines());
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
}

TEST_F(BlockedFilesSystemTest, ASubfolderThatCannotBeMadeFailsItsNotes) {
  WriteBytes(Path(L"data"), "a file");
  run_.Export(L"x.nsf", {L"-archive"});
  EXPECT_EQ(LogLines(),
            (Lines{"#WARNING# - Unable to move DXL file into place (tried retry)",
                   "#WARNING# - Major: Error exporting note 00000902 (File cannot be renamed)"}));
  EXPECT_EQ(run_.OutputFile(L"data"), "a file");
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
}

TEST_F(BlockedFilesSystemTest, ATemporaryFileThatCannotBeDeletedFailsTheNoteAfterFiveAttempts) {
  MakeFolder(Path(L"temp.tmp"));
  MakeFolder(Path(L"data"));
  WriteBytes(Path(L"idtable.txt"), "00000902\r\n");
  run_.Export(L"x.nsf", {L"-archive", L"-debug", L"-l", L"1"});
  EXPECT_EQ(LogLines(),
            (Lines{"#DEBUG# - Retrying delete DXL temporary file: 1",
                   "#DEBUG# - Retrying delete DXL temporary file: 2",
                   "#DEBUG# - Retrying delete DXL temporary file: 3",
                   "#DEBUG# - Retrying delete DXL temporary file: 4",
                   "#WARNING# - Unable to delete DXL temporary file (tried retry)",
                   "#WARNING# - Major: Error exporting note 00000902 (File is in use and cannot "
                   "be deleted)",
                   "#DEBUG# - Trying to NotesTerm", "#DEBUG# - NotesTermed",
                   "#DEBUG# - Exiting via SEH finally"}));
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(BlockedFilesSystemTest, ATemporaryFileThatAnotherProgramHoldsForAMomentCostsNothing) {
  UniqueSystemHandle held = Hold(L"temp.tmp");
  Program program(run_.Executable(), run_.CommandLine(L"x.nsf", {L"-archive", L"-debug"}));
  AwaitLogLine("Retrying delete DXL temporary file: 1");
  held.reset();
  EXPECT_EQ(program.WaitForEnd().exitCode, 0u);
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
  EXPECT_EQ(run_.Log().find("WARNING"), std::string::npos);
}

TEST_F(BlockedFilesSystemTest, AMarkerThatAnotherProgramHoldsForAMomentCostsNothing) {
  UniqueSystemHandle held = Hold(L"marker.txt");
  Program program(run_.Executable(), run_.CommandLine(L"x.nsf", {L"-archive", L"-debug"}));
  AwaitLogLine("#DEBUG# - Retry WriteMarkerFile (Permission denied): 1\r\n");
  held.reset();
  EXPECT_EQ(program.WaitForEnd().exitCode, 0u);
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
}

TEST_F(BlockedFilesSystemTest, AMarkerThatCannotBeWrittenEndsTheRunAfterThirtyAttempts) {
  MakeFolder(Path(L"marker.txt"));
  const ProgramResult result = run_.Export(L"x.nsf", {L"-archive", L"-debug"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(result.standardOutput.find("DOCUMENT"), std::string::npos);
  const Lines log = LogLines();
  EXPECT_TRUE(Contains(log, "#DEBUG# - Retry WriteMarkerFile (Permission denied): 29"));
  EXPECT_FALSE(Contains(log, "#DEBUG# - Retry WriteMarkerFile (Permission denied): 30"));
  EXPECT_EQ(CountLines(log, "#ERROR# - WriteMarkerFile failed (Permission denied)"), 1);
  EXPECT_EQ(CountLines(log, "#DEBUG# - Invoking child process"), 1);
  EXPECT_EQ(FilesIn("data"), Lines());
  EXPECT_EQ(run_.LedgerFault(1), "");
}

}  // namespace
}  // namespace larkspan::testing
