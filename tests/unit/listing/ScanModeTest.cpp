#include "listing/ScanMode.h"

#include <gtest/gtest.h>

#include <new>
#include <string>

#include "tests/faults/FileFaults.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/unit/listing/ListingTest.h"

namespace larkspan {
namespace {

using notes_api::WORD;

class ScanModeTest : public ListingTest {
 protected:
  ScanModeTest() {
    LeaveOutDebugLines();
    SetServer(L"<Local>");
    WriteData(L"directory.json", R"({"path": "C:\\data", "entries": [
      {"items": {"$Path": {"text": "a.nsf"}, "$Length": {"number": 1048576}},
       "matchBytes": "BC0A0000 D08325C1"}]})");
    WriteData(L"servers/Mill/directory.json", R"({"path": "Mill!!root!!x", "entries": [
      {"items": {"$Path": {"text": "m.nsf"}}}]})");
  }

  Lines Scanned() {
    RunScanMode();
    return ReadLines(PathOf(L"scan.txt"));
  }

  std::string ScanBytes() const { return ReadBytes(PathOf(L"scan.txt")); }
};

TEST_F(ScanModeTest, LocalDirectoryIsItsPathAndItsEntries) {
  Configure();
  EXPECT_EQ(Scanned(), (Lines{"C:\\data", "a.nsf\t\t\t\t4697254411347427328\tC12583D000000ABC"}));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ScanModeTest, ServerIsCutAtTheFirstMark) {
  SetServer(L"Mill");
  Configure();
  EXPECT_EQ(Scanned(), (Lines{"Mill", "m.nsf\t\t\t\t0\t0000000000000000"}));
}

// The database is opened by the server's name and the mark, whatever the name is.
struct ScanPathCase {
  const wchar_t* server;
  const char* path;
};

std::string openedPath;

notes_api::STATUS LARKSPAN_NOTES_CALL RefuseAndRemember(const char* path, notes_api::DHANDLE*) {
  openedPath = path;
  return 582;
}

class ScanPathTest : public ScanModeTest, public testing::WithParamInterface<ScanPathCase> {};

TEST_P(ScanPathTest, IsThatOfTheServersRoot) {
  SetServer(GetParam().server);
  Configure();
  const ReplacedEntryPoint replaced("NSFDbOpen", RefuseAndRemember);
  RunScanMode();
  EXPECT_EQ(openedPath, GetParam().path);
}

INSTANTIATE_TEST_SUITE_P(Servers, ScanPathTest,
                         testing::Values(ScanPathCase{L"<Local>", ""}, ScanPathCase{L"", "!!"},
                                         ScanPathCase{L"<local>", "<local>!!"},
                                         ScanPathCase{L"Mill/Example", "Mill/Example!!"},
                                         ScanPathCase{L"M\u00fchle", "M\x01\xFChle!!"}));

TEST_F(ScanModeTest, SearchIsForDatabasesAndFolders) {
  Configure();
  RunScanMode();
  const std::string arguments = Arguments("NSFSearch");
  EXPECT_NE(arguments.find(std::to_string(0x0006)), std::string::npos) << arguments;
  EXPECT_NE(arguments.find(std::to_string(0x200A)), std::string::npos) << arguments;
}

TEST_F(ScanModeTest, EarlierListingIsReplaced) {
  WriteBytes(PathOf(L"scan.txt"), std::string(5000, 'x'));
  Configure();
  EXPECT_EQ(Scanned().size(), 2U);
}

TEST_F(ScanModeTest, LibraryIsEndedAfterTheDirectoryIsClosed) {
  Configure();
  RunScanMode();
  EXPECT_EQ(Order({"NotesInitExtended", "NSFDbOpen", "NSFDbPathGet", "NSFSearch", "NSFDbClose",
                   "NotesTerm"}),
            (Lines{"NotesInitExtended", "NSFDbOpen", "NSFDbPathGet", "NSFSearch", "NSFDbClose",
                   "NotesTerm"}));
}

TEST_F(ScanModeTest, DirectoryThatCannotBeOpenedIsAnErrorAndEndsTheRuntime) {
  SetServer(L"Nowhere");
  Configure();
  RunScanMode();
  EXPECT_EQ(OnlyError(), "Error opening root directory (File does not exist)");
  EXPECT_EQ(ScanBytes(), "");
  EXPECT_EQ(Calls("NotesTerm"), 1);
  EXPECT_EQ(Calls("NSFSearch"), 0);
}

// An empty path would open the directory of this machine.
TEST_F(ScanModeTest, ServerThatCannotBeTranslatedIsAnErrorAndOpensNothing) {
  SetServer(L"Mill");
  ConfigureWithFaults(R"([{"entry": "OSTranslate", "call": 1, "status": 1}])");
  RunScanMode();
  EXPECT_TRUE(OnlyError().starts_with("Error opening root directory (")) << OnlyError();
  EXPECT_EQ(ScanBytes(), "");
  EXPECT_EQ(Calls("NSFDbOpen"), 0);
}

TEST_F(ScanModeTest, SearchThatFailsKeepsWhatItFound) {
  WriteData(L"directory.json", R"({"path": "C:\\data", "generate": 5})");
  ConfigureWithFaults(R"([{"entry": "NSFSearch", "matches": 2, "status": 554}])");
  EXPECT_EQ(Scanned().size(), 3U);
  EXPECT_EQ(LogLines(), Lines());
  EXPECT_EQ(Calls("NSFDbClose"), 1);
}

TEST_F(ScanModeTest, PathThatTheLibraryDoesNotTellIsTheOneThatWasOpened) {
  SetServer(L"Mill");
  ConfigureWithFaults(R"([{"entry": "NSFDbPathGet", "status": 554}])");
  EXPECT_EQ(Scanned().at(0), "Mill");
}

TEST_F(ScanModeTest, FullDiskIsAnErrorAndLeavesNoGap) {
  Configure();
  const FileFaults faults("write scan.txt 1 diskFull");
  RunScanMode();
  EXPECT_EQ(ScanBytes(), "");
  EXPECT_EQ(OnlyError(), "Unable to write output file");
}

WORD LARKSPAN_NOTES_CALL ThrowForUtf8(WORD mode, const char* in, WORD length, char* out,
                                      WORD size) {
  if (mode == notes_api::kTranslateNotesToUtf8) throw std::bad_alloc();
  return Original("OSTranslate", notes_api::OSTranslate)(mode, in, length, out, size);
}

// The search stands between the line and the listing, and has to end as if nothing had been.
TEST_F(ScanModeTest, ExceptionWhileALineIsMadeEndsTheListingBehindTheLastWholeLine) {
  Configure();
  const ReplacedEntryPoint replaced("OSTranslate", ThrowForUtf8);
  EXPECT_EQ(Scanned(), Lines{"C:\\data"});
  EXPECT_EQ(OnlyError(), "The listing was ended by an exception");
  EXPECT_EQ(Order({"NSFSearch", "NSFDbClose", "NotesTerm"}),
            (Lines{"NSFSearch", "NSFDbClose", "NotesTerm"}));
}

}  // namespace
}  // namespace larkspan
