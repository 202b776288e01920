#include "tests/unit/export/WorkerRunTest.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/faults/FileFaults.h"
#include "tests/support/ParameterName.h"

namespace larkspan {
namespace {

TEST_F(WorkerRunTest, OutsideArchivesAllButDocumentsAreExported) {
  Run();
  EXPECT_TRUE(Exists(PathOf(L"0000090A.dxl")));
  EXPECT_FALSE(Exists(PathOf(L"00000902.dxl")));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(WorkerRunTest, ArchiveExportsEveryNote) {
  SetArchive(true);
  Run();
  EXPECT_TRUE(Exists(PathOf(L"data\\00000902.dxl")));
  EXPECT_TRUE(Exists(PathOf(L"data\\00000906.dxl")));
  EXPECT_TRUE(Exists(PathOf(L"design\\0000090A.dxl")));
}

TEST_F(WorkerRunTest, SearchOutsideArchivesLeavesDocumentsOut) {
  Run();
  EXPECT_EQ(Arguments("NSFSearchExtended3"),
            R"([true,0,0,0,false,16,0,0,0,0,32766,"19000101T000000,00+00",true,true,false,0])");
}

TEST_F(WorkerRunTest, SearchOfAnArchiveIsForEveryClass) {
  SetArchive(true);
  Run();
  EXPECT_EQ(Arguments("NSFSearchExtended3"),
            R"([true,0,0,0,false,16,2147483650,0,0,0,32767,"19000101T000000,00+00",true,true,)"
            "false,0]");
}

TEST_F(WorkerRunTest, NotesFoundAreFrozenInTheIdTableFile) {
  SetArchive(true);
  Run();
  EXPECT_EQ(ReadBytes(PathOf(L"idtable.txt")), "00000902\r\n00000906\r\n0000090A\r\n");
}

TEST_F(WorkerRunTest, AclIsExported) {
  Run();
  EXPECT_TRUE(Exists(PathOf(L"acl.dxl")));
}

TEST_F(WorkerRunTest, AclIsExportedByTheNormalExporter) {
  Run();
  EXPECT_NE(ReadBytes(PathOf(L"acl.dxl")).find("<!-- exporter 1;"), std::string::npos);
}

TEST_F(WorkerRunTest, AuditTellsOfTheDatabaseAndItsSizes) {
  Run();
  EXPECT_EQ(AuditLines(),
            (Lines{"Archive database server: ", "Archive database path  : test.nsf",
                   "Archive without full access admin", "Database size before archive: 6291456",
                   "Database size after archive : 6291456"}));
}

TEST_F(WorkerRunTest, SubfoldersAreMadeInAnArchiveOnly) {
  Run();
  EXPECT_FALSE(Exists(PathOf(L"data")));
  EXPECT_FALSE(Exists(PathOf(L"views")));
}

TEST_F(WorkerRunTest, WhatIsDoneOnceIsDoneInAFixedOrder) {
  SetArchive(true);
  WriteBytes(PathOf(L"unidindex.txt"), "old\r\n");
  const Lines inOrder = {"move acl.dxl",         "folder data",      "folder design",
                         "folder design2",       "folder profile",   "folder views",
                         "delete unidindex.txt", "open idtable.txt", "open marker.txt",
                         "open unidindex.txt"};
  const FileFaults files;
  Run();
  Lines done = files.OperationsAmong(inOrder);
  done.resize(inOrder.size());  // What follows is the same for every note.
  EXPECT_EQ(done, inOrder);
}

TEST_F(WorkerRunTest, UnidIndexIsStartedAfresh) {
  SetArchive(true);
  WriteBytes(PathOf(L"unidindex.txt"), "old\r\n");
  Run();
  EXPECT_EQ(ReadLines(PathOf(L"unidindex.txt")).size(), 3u);
}

TEST_F(WorkerRunTest, UnidIndexIsLeftOutsideArchives) {
  WriteBytes(PathOf(L"unidindex.txt"), "old\r\n");
  Run();
  EXPECT_EQ(ReadBytes(PathOf(L"unidindex.txt")), "old\r\n");
}

TEST_F(WorkerRunTest, ProgressTellsOfEveryStage) {
  SetArchive(true);
  Run();
  EXPECT_EQ(progress_,
            "PROGRESS: Opening 'test.nsf' on ''\r\n"
            "PROGRESS: Exporting database properties\r\n"
            "PROGRESS: VIEWCOUNT: 0\r\n"
            "PROGRESS: Scanning documents\r\n"
            "PROGRESS: DOCCOUNT: 3\r\n"
            "PROGRESS: DOCUMENT: 00000902\r\n"
            "PROGRESS: DOCUMENT: 00000906\r\n"
            "PROGRESS: DOCUMENT: 0000090A\r\n");
}

TEST_F(WorkerRunTest, NoProgressIsToldOutsideArchives) {
  Run();
  EXPECT_EQ(progress_, "");
}

constexpr char kDatabaseWithAView[] =
    R"({"notes": [{"id": "0000011A", "class": "view", "view": {"indexed": true}}]})";

class WorkerRunViewTest : public WorkerRunTest {
 protected:
  WorkerRunViewTest() {
    WriteData(L"views.nsf", kDatabaseWithAView);
    ChangeSettings([](Settings& settings) { settings.databasePath = L"views.nsf"; });
  }

  bool HasViewFile() const { return Exists(PathOf(L"views\\0000011A.xml")); }
};

TEST_F(WorkerRunViewTest, ArchiveHasTheViewsBeforeTheNotesAreListed) {
  SetArchive(true);
  Run();
  EXPECT_TRUE(HasViewFile());
  EXPECT_EQ(Order({"NSFDbGetModifiedNoteTable", "NSFSearchExtended3"}),
            (Lines{"NSFDbGetModifiedNoteTable", "NSFSearchExtended3"}));
}

TEST_F(WorkerRunViewTest, ViewsCanBeLeftOut) {
  SetArchive(true);
  ChangeSettings([](Settings& settings) { settings.noViews = true; });
  Run();
  EXPECT_FALSE(HasViewFile());
  EXPECT_EQ(Calls("NSFDbGetModifiedNoteTable"), 0);
  EXPECT_EQ(progress_.find("VIEW"), std::string::npos);
}

TEST_F(WorkerRunViewTest, OutsideArchivesViewsAreLeftOut) {
  Run();
  EXPECT_EQ(Calls("NSFDbGetModifiedNoteTable"), 0);
  EXPECT_EQ(Calls("NIFOpenCollection"), 0);
}

TEST_F(WorkerRunViewTest, LaterWorkerLeavesTheViewsOut) {
  SetArchive(true);
  WriteBytes(PathOf(L"idtable.txt"), "0000011A\n");
  Run(0x902);
  EXPECT_EQ(Calls("NSFDbGetModifiedNoteTable"), 0);
}

TEST_F(WorkerRunTest, PropertiesAreWrittenBeforeTheAcl) {
  Run();
  EXPECT_TRUE(ReadBytes(PathOf(L"db.dxl")).ends_with("</database>\r\n"));
  EXPECT_EQ(Order({"NSFDbModifiedTime", "DXLExportACL"}),
            (Lines{"NSFDbModifiedTime", "DXLExportACL"}));
}

TEST_F(WorkerRunTest, EmptyDatabaseGivesAnEmptyListAndTheSizes) {
  SetArchive(true);
  WriteData(L"empty.nsf", R"({"sizeKilobytes": 1})");
  ChangeSettings([](Settings& settings) { settings.databasePath = L"empty.nsf"; });
  Run();
  EXPECT_EQ(ReadBytes(PathOf(L"idtable.txt")), "");
  EXPECT_NE(progress_.find("PROGRESS: DOCCOUNT: 0\r\n"), std::string::npos);
  EXPECT_EQ(AuditLines().back(), "Database size after archive : 1024");
}

TEST_F(WorkerRunTest, RunLeavesNoMarker) {
  SetArchive(true);
  Run();
  EXPECT_FALSE(Exists(PathOf(L"marker.txt")));
}

TEST_F(WorkerRunTest, LaterWorkerExportsWhatComesBehindItsResumeNote) {
  SetArchive(true);
  WriteBytes(PathOf(L"idtable.txt"), "00000902\n00000906\n0000090A\n");
  MakeFolder(PathOf(L"data"));
  MakeFolder(PathOf(L"design"));
  Run(0x902);
  EXPECT_FALSE(Exists(PathOf(L"data\\00000902.dxl")));
  EXPECT_TRUE(Exists(PathOf(L"data\\00000906.dxl")));
  EXPECT_TRUE(Exists(PathOf(L"design\\0000090A.dxl")));
}

TEST_F(WorkerRunTest, LaterWorkerDoesNothingThatIsDoneOnce) {
  SetArchive(true);
  WriteBytes(PathOf(L"idtable.txt"), "00000902\n");
  Run(0x902);
  EXPECT_EQ(Calls("NSFSearchExtended3"), 0);
  EXPECT_EQ(Calls("DXLExportACL"), 0);
  EXPECT_FALSE(Exists(PathOf(L"db.dxl")));
  EXPECT_FALSE(Exists(PathOf(L"data")));
}

TEST_F(WorkerRunTest, LaterWorkerTellsOnlyTheSizeAfter) {
  WriteBytes(PathOf(L"idtable.txt"), "00000902\n");
  Run(0x902);
  EXPECT_EQ(AuditLines(), Lines{"Database size after archive : 6291456"});
}

TEST_F(WorkerRunTest, LaterWorkerAddsToTheUnidIndex) {
  SetArchive(true);
  WriteBytes(PathOf(L"idtable.txt"), "00000906\n");
  WriteBytes(PathOf(L"unidindex.txt"), "old\r\n");
  MakeFolder(PathOf(L"data"));
  Run(0x902);
  EXPECT_EQ(ReadLines(PathOf(L"unidindex.txt")).size(), 2u);
}

TEST_F(WorkerRunTest, LaterWorkerLeavesTheIdTableFile) {
  WriteBytes(PathOf(L"idtable.txt"), "0000090A\n00000902\n");
  Run(0xFFFFFFFE);
  EXPECT_EQ(ReadBytes(PathOf(L"idtable.txt")), "0000090A\n00000902\n");
}

TEST_F(WorkerRunTest, LaterWorkerSendsNoStagesButTheOpening) {
  SetArchive(true);
  WriteBytes(PathOf(L"idtable.txt"), "00000902\n");
  Run(0x902);
  EXPECT_EQ(progress_, "PROGRESS: Opening 'test.nsf' on ''\r\n");
}

// The path by which the database is opened.
struct PathCase {
  const char* name;
  const wchar_t* server;
  const char* path;  // As recorded by the library.
};

class WorkerRunPath : public WorkerRunTest, public testing::WithParamInterface<PathCase> {};

TEST_P(WorkerRunPath, IsBuiltOfServerAndDatabase) {
  WriteData(L"there.nsf", R"({"title": "local"})");
  WriteData(L"servers/Garden/there.nsf", R"({"title": "Garden"})");
  ChangeSettings([](Settings& settings) {
    settings.databasePath = L"there.nsf";
    settings.server = GetParam().server;
    settings.fullAccess = true;
  });
  Run();
  EXPECT_NE(Arguments("NSFDbOpenExtended").find(GetParam().path), std::string::npos)
      << Arguments("NSFDbOpenExtended");
}

INSTANTIATE_TEST_SUITE_P(
    Servers, WorkerRunPath,
    testing::Values(PathCase{"NoServer", L"", R"("path":"there.nsf")"},
                    PathCase{"Local", L"<Local>", R"("path":"there.nsf")"},
                    PathCase{"Named", L"Garden", R"("path":"Garden!!there.nsf")"},
                    PathCase{"LocalInOtherCase", L"<local>", R"("path":"<local>!!there.nsf")"},
                    PathCase{"OutsideAscii", L"Glash\u00E4user",
                             "\"path\":\"Glash\u00E4user!!there.nsf\""}),
    kNameOf);

TEST_F(WorkerRunTest, ProgressNamesDatabaseAndServerAsGiven) {
  SetArchive(true);
  WriteData(L"servers/Garden/bulbs.nsf", "{}");
  ChangeSettings([](Settings& settings) {
    settings.databasePath = L"bulbs.nsf";
    settings.server = L"Garden";
  });
  Run();
  EXPECT_TRUE(progress_.starts_with("PROGRESS: Opening 'bulbs.nsf' on 'Garden'\r\n"));
}

TEST_F(WorkerRunTest, FullAccessOpensWithANamesList) {
  WriteData(L"locked.nsf", R"({"access": "fullAccessOnly"})");
  ChangeSettings([](Settings& settings) {
    settings.databasePath = L"locked.nsf";
    settings.fullAccess = true;
  });
  Run();
  EXPECT_EQ(AuditLines()[2], "Archive with full access admin");
  EXPECT_EQ(LogLines(), Lines());
}

}  // namespace
}  // namespace larkspan
