#include <gtest/gtest.h>

#include <string>

#include "tests/support/PauseRecorder.h"
#include "tests/unit/export/WorkerRunTest.h"

namespace larkspan {
namespace {

TEST_F(WorkerRunTest, DatabaseThatDoesNotOpenIsAnErrorLineAndEndsTheRun) {
  ChangeSettings([](Settings& settings) { settings.databasePath = L"missing.nsf"; });
  Run();
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error opening database (File does not exist)"});
  EXPECT_EQ(AuditLines(), Lines());
  EXPECT_EQ(Calls("DXLDeleteExporter"), 5);
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
  ChangeSettings([](Settings& settings) { settings.progressPipe = 44; });
  MonitorPipe([](std::int64_t) {});
  ChangeSettings([](Settings& settings) { settings.progressPipe = kNoPipe; });
  Run();
  EXPECT_EQ(Calls("NSFNoteOpen"), 0);
  EXPECT_FALSE(Exists(PathOf(L"marker.txt")));
  EXPECT_EQ(AuditLines().back(), "Database size before archive: 6291456");
}

TEST_F(WorkerRunTest, StopRequestBeforeTheListIsHeededAtTheFirstNoteOnly) {
  SetArchive(true);
  ChangeSettings([](Settings& settings) { settings.progressPipe = 44; });
  MonitorPipe([](std::int64_t) {});
  ChangeSettings([](Settings& settings) { settings.progressPipe = kNoPipe; });
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

}  // namespace
}  // namespace larkspan
