#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/faults/FileFaults.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/StopRequest.h"
#include "tests/unit/export/WorkerRunTest.h"

namespace larkspan {
namespace {

HMODULE WINAPI FindNoNotesLibrary(const wchar_t* name) {
  return name == std::wstring(L"nnotes.dll") ? nullptr : LoadLibraryW(name);
}

TEST_F(WorkerRunTest, LibraryThatIsNotThereIsAnErrorLineAndEndsTheRun) {
  {
    const ReplacedEntryPoint replaced("kernel32.dll", "GetModuleHandleW", FindNoNotesLibrary);
    Run();
  }
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to get module handle for nnotes.dll"});
  EXPECT_EQ(Calls("DXLCreateExporter"), 0);
}

TEST_F(WorkerRunTest, DatabaseThatDoesNotOpenIsAnErrorLineAndEndsTheRun) {
  ChangeSettings([](Settings& settings) { settings.databasePath = L"missing.nsf"; });
  Run();
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error opening database (File does not exist)"});
  EXPECT_EQ(AuditLines(), Lines());
  EXPECT_EQ(Calls("DXLDeleteExporter"), 5);
}

// An empty path would open the data directory.
TEST_F(WorkerRunTest, PathThatCannotBeTranslatedIsTheSameLineAndOpensNothing) {
  SetFaults(R"([{"entry": "OSTranslate", "call": 1, "status": 1}])");
  Run();
  ASSERT_EQ(LogLines().size(), 1U);
  EXPECT_TRUE(LogLines()[0].starts_with("#ERROR# - Error opening database (")) << LogLines()[0];
  EXPECT_EQ(Calls("NSFDbOpen"), 0);
}

TEST_F(WorkerRunTest, DatabaseThatDoesNotOpenWithFullAccessIsTheSameLine) {
  ChangeSettings([](Settings& settings) { settings.fullAccess = true; });
  SetFaults(R"([{"entry": "SECKFMGetUserName", "status": 273}])");
  Run();
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error opening database (Insufficient memory)"});
}

TEST_F(WorkerRunTest, ExporterThatCannotBeCreatedEndsTheRunBeforeTheDatabaseIsOpened) {
  SetFaults(R"([{"entry": "DXLCreateExporter", "exporter": 4, "status": 273}])");
  Run();
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error creating DXL Exporter (no images, no convert) "
                              "(Insufficient memory)"});
  EXPECT_EQ(Calls("NSFDbOpen"), 0);
}

TEST_F(WorkerRunTest, PropertiesThatCannotBeToldEndTheRunBeforeAnyNote) {
  SetFaults(R"([{"entry": "NSFDbIDGet", "status": 554}])");
  SetArchive(true);
  Run();
  EXPECT_EQ(LogLines(),
            (Lines{"#WARNING# - Error retrieving database id (Database file is damaged)",
                   "#ERROR# - Error exporting database properties (Database file is damaged)"}));
  EXPECT_EQ(Calls("DXLExportACL") + Calls("NSFSearchExtended3") + Calls("IDCreateTable"), 0);
  EXPECT_EQ(AuditLines().back(), "Database size before archive: 6291456");
}

TEST_F(WorkerRunTest, PropertiesThatCannotBeWrittenEndTheRunBeforeAnyNote) {
  const FileFaults faults("write db.dxl.new 1 diskFull");
  Run();
  ASSERT_EQ(LogLines().size(), 2u);
  EXPECT_TRUE(LogLines()[1].starts_with("#ERROR# - Error exporting database properties ("));
  EXPECT_EQ(Calls("DXLExportACL"), 0);
}

TEST_F(WorkerRunTest, AclThatCannotBeExportedIsAWarning) {
  SetFaults(R"([{"entry": "DXLExportACL", "status": 582}])");
  Run();
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Error exporting ACL "
                              "(You are not authorized to open the database)"});
}

TEST_F(WorkerRunTest, RunGoesOnWithoutTheAcl) {
  SetFaults(R"([{"entry": "DXLExportACL", "status": 582}])");
  Run();
  EXPECT_TRUE(Exists(PathOf(L"0000090A.dxl")));
}

TEST_F(WorkerRunTest, AclThatCannotBePlacedIsAWarningToo) {
  WriteBytes(PathOf(L"acl.dxl"), "old");
  const PauseRecorder recorder;
  Run();
  EXPECT_EQ(LogLines().back(), "#WARNING# - Error exporting ACL (File cannot be renamed)");
}

TEST_F(WorkerRunTest, SizeThatIsNotToldIsAWarningBeforeAndAfter) {
  SetFaults(R"([{"entry": "NSFDbQuotaGet", "status": 562}])");
  Run();
  const std::string line =
      "#WARNING# - Unable to read database quota (Database has no quota information)";
  EXPECT_EQ(LogLines(), (Lines{line, line}));
  EXPECT_TRUE(Exists(PathOf(L"0000090A.dxl")));
}

TEST_F(WorkerRunTest, TableThatCannotBeCreatedEndsTheRun) {
  SetFaults(R"([{"entry": "IDCreateTable", "status": 273}])");
  Run();
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error retrieving notes (Insufficient memory)"});
  EXPECT_EQ(Calls("NSFSearchExtended3"), 0);
}

TEST_F(WorkerRunTest, SearchThatFailsIsAnErrorLineAndEndsTheRun) {
  SetFaults(R"([{"entry": "NSFSearchExtended3", "status": 554}])");
  Run();
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error retrieving notes (Database file is damaged)"});
  EXPECT_FALSE(Exists(PathOf(L"idtable.txt")));
  EXPECT_EQ(Calls("NSFNoteOpen"), 0);
}

TEST_F(WorkerRunTest, NoteThatCannotBeListedEndsTheRun) {
  SetFaults(R"([{"entry": "IDInsert", "call": 1, "status": 273}])");
  Run();
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error retrieving notes (Insufficient memory)"});
}

TEST_F(WorkerRunTest, ListThatCannotBeSavedIsAnErrorLineAndEndsTheRun) {
  MakeFolder(PathOf(L"idtable.txt"));
  SetArchive(true);
  Run();
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to save document list"});
  EXPECT_EQ(Calls("NSFNoteOpen"), 0);
  EXPECT_EQ(progress_.find("DOCCOUNT"), std::string::npos);
}

// A list that is incomplete on disk would make later workers lose notes.
class IncompleteListTest : public WorkerRunTest, public testing::WithParamInterface<const char*> {};

TEST_P(IncompleteListTest, IsAnErrorLineAndEndsTheRunAndIsDeleted) {
  const FileFaults faults(GetParam());
  Run();
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to save document list"});
  EXPECT_FALSE(Exists(PathOf(L"idtable.txt")));
  EXPECT_EQ(Calls("NSFNoteOpen"), 0);
}

INSTANTIATE_TEST_SUITE_P(Faults, IncompleteListTest,
                         testing::Values("write idtable.txt 1 diskFull 4",
                                         "close idtable.txt 1 diskFull"));

TEST_F(WorkerRunTest, RunThatEndsEarlyTellsNoSizeAfter) {
  MakeFolder(PathOf(L"idtable.txt"));
  Run();
  EXPECT_EQ(AuditLines().back(), "Database size before archive: 6291456");
}

TEST_F(WorkerRunTest, MissingListIsAnErrorLineAndEndsTheLaterWorker) {
  Run(0x902);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to read document list"});
  EXPECT_EQ(AuditLines(), Lines());
}

TEST_F(WorkerRunTest, ListWithTextThatIsNoNumberEndsTheLaterWorkerBeforeAnyNote) {
  WriteBytes(PathOf(L"idtable.txt"), "00000902\n00000906\nXYZ\n");
  Run(0x902);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to read document list"});
  EXPECT_EQ(Calls("NSFNoteOpen"), 0);
}

TEST_F(WorkerRunTest, StopRequestEndsTheRunWithoutTheSizeAfter) {
  SetArchive(true);
  RequestStop();
  Run();
  EXPECT_EQ(Calls("NSFNoteOpen"), 0);
  EXPECT_FALSE(Exists(PathOf(L"marker.txt")));
  EXPECT_EQ(AuditLines().back(), "Database size before archive: 6291456");
}

TEST_F(WorkerRunTest, StopRequestBeforeTheListIsHeededAtTheFirstNoteOnly) {
  SetArchive(true);
  RequestStop();
  Run();
  EXPECT_TRUE(Exists(PathOf(L"idtable.txt")));
}

TEST_F(WorkerRunTest, DesignFailureEndsTheRunWithoutTheSizeAfter) {
  SetFaults(R"([{"entry": "DXLExportNote", "status": 6967}])");
  Run();
  EXPECT_EQ(AuditLines().back(), "Database size before archive: 6291456");
}

TEST_F(WorkerRunTest, WhatWasOpenedIsClosedInTheReverseOrder) {
  Run();
  EXPECT_EQ(Order({"IDDestroyTable", "NSFDbClose", "DXLDeleteExporter"}),
            (Lines{"IDDestroyTable", "NSFDbClose", "DXLDeleteExporter", "DXLDeleteExporter",
                   "DXLDeleteExporter", "DXLDeleteExporter", "DXLDeleteExporter"}));
}

TEST_F(WorkerRunTest, DatabaseWhosePathIsNotTranslatedIsNotSaidToBeOpened) {
  SetArchive(true);
  SetFaults(R"([{"entry": "OSTranslate", "call": 1, "status": 1}])");
  Run();
  EXPECT_EQ(progress_, "");
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error opening database (Text is too long for the Notes "
                              "library or cannot be put into its characters)"});
}

TEST_F(WorkerRunTest, LocationThatTheLibraryDoesNotTellIsAWarning) {
  SetFaults(R"([{"entry": "NSFDbPathGet", "call": 1, "status": 582}])");
  Run();
  EXPECT_EQ(LogLines().front(),
            "#WARNING# - Unable to read database location "
            "(You are not authorized to open the database)");
  EXPECT_EQ(AuditLines().front(), "Archive database server: ");
}

TEST_F(WorkerRunTest, TemporaryFileThatCannotBeDeletedCostsTheAclAndEachNoteItsLine) {
  SetArchive(true);
  const PauseRecorder recorder;
  const FileFaults faults("delete temp.tmp * sharingViolation");
  Run();
  EXPECT_TRUE(Exists(PathOf(L"db.dxl")));
  const Lines log = LogLines();
  EXPECT_EQ(std::count_if(log.begin(), log.end(),
                          [](const std::string& line) {
                            return line.starts_with("#WARNING# - Error exporting ACL (");
                          }),
            1);
  EXPECT_EQ(std::count_if(log.begin(), log.end(),
                          [](const std::string& line) {
                            return line.starts_with("#WARNING# - Major: Error exporting note ");
                          }),
            3);
}

TEST_F(WorkerRunTest, MarkerThatIsHeldAfterTheLastNoteDoesNotStay) {
  const PauseRecorder recorder;
  const FileFaults faults("delete marker.txt 1-2 sharingViolation");
  Run();
  EXPECT_FALSE(Exists(PathOf(L"marker.txt")));
  EXPECT_EQ(recorder.pauses(), std::vector<long long>(1, 1000));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(WorkerRunTest, StageOfARunThatWasEndedIsDeleted) {
  WriteBytes(PathOf(L"db.dxl.new"), "half");
  SetFaults(R"([{"entry": "NSFDbReplicaInfoGet", "status": 582}])");
  Run();
  EXPECT_FALSE(Exists(PathOf(L"db.dxl.new")));
}

}  // namespace
}  // namespace larkspan
