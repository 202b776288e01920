// The content of views in whole runs: healthy ones, damaged ones, many entries, a stop in between.
#include <algorithm>

#include "base/Utf8.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

// The number of times that a text holds another.
std::size_t Count(const std::string& text, const std::string& part) {
  std::size_t count = 0;
  for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
    ++count;
  }
  return count;
}

class ViewsSystemTest : public SystemTest {
 protected:
  // Files of the tree below "views/".
  Lines ViewFiles() const {
    Lines names = FilesIn("views");
    for (std::string& name : names) name = name.substr(std::string("views/").size());
    return names;
  }
};

TEST_F(ViewsSystemTest, DamagedViewsAreByteForByteAsExpected) {
  EXPECT_EQ(run_.Export(L"damaged-views.nsf", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "damaged-views-archive"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ViewsSystemTest, NoDamageOfAViewHasALineButAPurgeThatFails) {
  run_.Export(L"damaged-views.nsf", {L"-archive", L"-debug"});
  const Lines log = LogLines();
  EXPECT_EQ(CountLines(log, "#DEBUG# - Purging collection 22a failed"), 1);
  EXPECT_EQ(std::count_if(
                log.begin(), log.end(),
                [](const std::string& line) { return line.find("rror '") != std::string::npos; }),
            1);
  EXPECT_EQ(run_.Log().find("view"), std::string::npos);
}

TEST_F(ViewsSystemTest, ViewsCanBeLeftOut) {
  const ProgramResult result = run_.Export(L"sample.nsf", {L"-archive", L"-noview"});
  EXPECT_EQ(ViewFiles(), Lines());
  EXPECT_EQ(result.standardOutput.find("VIEW"), std::string::npos);
  EXPECT_EQ(Calls(0, "NIFOpenCollection"), 0);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ViewsSystemTest, APlainExportHasNoViews) {
  run_.Export(L"sample.nsf", {});
  EXPECT_FALSE(run_.HasOutputFile(L"views"));
  EXPECT_EQ(Calls(0, "NSFDbGetModifiedNoteTable"), 0);
}

// A hundred thousand entries take many readings.
TEST_F(ViewsSystemTest, AViewOfAHundredThousandEntriesIsWrittenWhole) {
  run_.Export(L"big-view.nsf", {L"-archive"});
  ASSERT_EQ(ViewFiles().size(), 1u);
  const std::string name = ViewFiles()[0];
  const std::string view = run_.OutputFile(L"views\\" + std::wstring(name.begin(), name.end()));
  EXPECT_EQ(Count(view, "<document "), 100000u);
  EXPECT_TRUE(view.ends_with("</view>\r\n"));
  EXPECT_GT(Calls(0, "NIFReadEntries"), 50);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ViewsSystemTest, AnIndexThatWasBuiltForTheExportIsGoneAfterwards) {
  run_.AddDatabase(L"x.nsf", R"({"notes": [{"id": "00000102", "class": "view", "view": {}}]})");
  run_.Export(L"x.nsf", {L"-archive"});
  EXPECT_EQ(Ledger(0)["arguments"]["NIFPurgeCollection"],
            (nlohmann::json{{"view", 0x102}, {"hadIndex", true}}));
}

TEST_F(ViewsSystemTest, AnIndexThatWasThereStays) {
  run_.AddDatabase(L"x.nsf", R"({"notes": [{"id": "00000102", "class": "view",
                                            "view": {"indexed": true}}]})");
  run_.Export(L"x.nsf", {L"-archive"});
  EXPECT_EQ(Calls(0, "NIFPurgeCollection"), 0);
  EXPECT_EQ(Calls(0, "NIFOpenCollection"), 2);
}

TEST_F(ViewsSystemTest, AStopInTheViewLoopEndsBeforeTheNextView) {
  run_.AddDatabase(L"x.nsf",
                   R"({"notes": [{"id": "00000102", "class": "view", "view": {"indexed": true}},
                                 {"id": "00000106", "class": "view", "view": {"indexed": true}},
                                 {"id": "0000010A", "class": "view", "view": {"indexed": true}}]})");
  // Gives the monitor time to see the pipe's end while the second view is read.
  run_.SetFaults(R"([{"entry": "NIFReadEntries", "call": 2, "wait": 5000}])");
  StopPipe pipe;
  Program program(run_.Executable(),
                  run_.CommandLine(L"x.nsf", {L"-archive", L"-pipe", pipe.HandleText()}));
  pipe.CloseReadEnd();
  ASSERT_TRUE(program.ReadUntil("PROGRESS: VIEW: ", 2));
  pipe.Close();
  const ProgramResult result = program.WaitForEnd();
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_TRUE(result.standardOutput.ends_with("PROGRESS: VIEW: 00000106\r\n"))
      << result.standardOutput;
  EXPECT_EQ(ViewFiles(), (Lines{"00000102.xml", "00000106.xml"}));
  EXPECT_EQ(FilesIn("design"), Lines());
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

// There is no marker yet, so nothing tells the supervisor where to go on.
TEST_F(ViewsSystemTest, ACrashInAViewEndsTheRunBeforeAnyNote) {
  run_.AddDatabase(L"x.nsf",
                   R"({"notes": [{"id": "00000102", "class": "view", "view": {"indexed": true}},
                                 {"id": "00000106", "class": "view", "view": {"indexed": true}}]})");
  run_.SetFaults(
      R"([{"entry": "NIFReadEntries", "note": "00000106", "action": "accessViolation"}])");
  EXPECT_EQ(run_.Export(L"x.nsf", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(ViewFiles(), Lines{"00000102.xml"});
  EXPECT_EQ(FilesIn("design"), Lines());
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Child process returned 3221225477 outside a note; the "
                              "export may be incomplete"});
  EXPECT_FALSE(run_.HasOutputFile(L"idtable.txt"));
}

struct FaultyViewFile {
  const char* name;
  const char* plan;
  Lines log;
  Lines views;
};

// An archive of two views; the properties and the access control list are placed before them.
class FaultyViewFileSystemTest : public ViewsSystemTest,
                                 public ::testing::WithParamInterface<FaultyViewFile> {};

TEST_P(FaultyViewFileSystemTest, HasALineAndTheOthersGoOn) {
  run_.AddDatabase(L"x.nsf",
                   R"({"notes": [{"id": "00000102", "class": "view", "view": {"indexed": true}},
                                 {"id": "00000106", "class": "view", "view": {"indexed": true}}]})");
  run_.UseFaultyFiles(GetParam().plan);
  EXPECT_EQ(run_.Export(L"x.nsf", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(ViewFiles(), GetParam().views);
  Lines log = LogLines();
  const std::string folder = WideToUtf8(run_.output());
  for (std::string& line : log) {
    if (const std::size_t at = line.find(folder); at != std::string::npos) {
      line.replace(at, folder.size(), "OUT");
    }
  }
  EXPECT_EQ(log, GetParam().log);
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

const Lines kFirstView = {"00000102.xml"};
const Lines kSecondView = {"00000106.xml"};
const Lines kBothViews = {"00000102.xml", "00000106.xml"};
const Lines kFirstUnwritten = {"#WARNING# - Unable to write OUT\\views\\00000102.xml"};

INSTANTIATE_TEST_SUITE_P(
    Faults, FaultyViewFileSystemTest,
    ::testing::Values(
        FaultyViewFile{"NoTemporaryFile", "open (temporary) 2 accessDenied", kFirstUnwritten,
                       kSecondView},
        FaultyViewFile{"DiskFullInTheTemporaryFile", "write (temporary) 2 diskFull",
                       kFirstUnwritten, kSecondView},
        FaultyViewFile{"DiskFullInTheCopy", "write 00000102.xml.new 1 diskFull 5", kFirstUnwritten,
                       kSecondView},
        FaultyViewFile{"DiskFullAtTheCloseOfTheCopy", "close 00000102.xml.new 1 diskFull",
                       kFirstUnwritten, kSecondView},
        FaultyViewFile{
            "AMoveThatFailsOnce", "move 00000106.xml 1 sharingViolation", {}, kBothViews},
        FaultyViewFile{
            "AMoveThatFailsForEver", "move 00000106.xml * sharingViolation", {}, kBothViews},
        FaultyViewFile{"NoStage", "open 00000106.xml.new * accessDenied", {}, kBothViews},
        FaultyViewFile{"NoStageAndNoFile",
                       "open 00000106.xml.new * accessDenied; open 00000106.xml * accessDenied",
                       {"#WARNING# - Unable to write OUT\\views\\00000106.xml"},
                       kFirstView},
        FaultyViewFile{"NoFolder",
                       "folder views 1 accessDenied",
                       {"#WARNING# - Unable to write OUT\\views\\00000102.xml",
                        "#WARNING# - Unable to write OUT\\views\\00000106.xml"},
                       {}}),
    [](const auto& test) { return std::string(test.param.name); });

TEST_F(ViewsSystemTest, PropertiesThatCannotBeWrittenEndTheRunBeforeAnyNote) {
  run_.AddDatabase(L"two.nsf", DocumentsJson(2));
  run_.UseFaultyFiles("write db.dxl.new 1 diskFull");
  EXPECT_EQ(run_.Export(L"two.nsf", {L"-archive"}).exitCode, 0u);
  const Lines log = LogLines();
  ASSERT_EQ(log.size(), 2u);
  EXPECT_TRUE(log[0].starts_with("#WARNING# - Unable to write ") && log[0].ends_with("\\db.dxl"));
  EXPECT_EQ(log[1], "#ERROR# - Error exporting database properties (Error writing to file)");
  for (const wchar_t* name : {L"db.dxl", L"acl.dxl", L"idtable.txt", L"temp.tmp", L"data"}) {
    EXPECT_FALSE(run_.HasOutputFile(name));
  }
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(ViewsSystemTest, PropertiesThatTheLibraryRefusesEndTheRunBeforeAnyNote) {
  run_.AddDatabase(L"two.nsf",
                   DocumentsJson(2, FaultsMember(R"({"entry": "NSFDbInfoGet", "status": 554})")));
  run_.Export(L"two.nsf", {});
  EXPECT_EQ(LogLines(),
            (Lines{"#WARNING# - Error retrieving database info (Database file is damaged)",
                   "#ERROR# - Error exporting database properties (Database file is damaged)"}));
  EXPECT_FALSE(run_.HasOutputFile(L"db.dxl"));
  EXPECT_FALSE(run_.HasOutputFile(L"acl.dxl"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

// Each call that the properties and the views make fails once, in a run of its own. Whatever
// happens, the run ends and gives everything back, and each file of a view is whole or not there.
class ViewCallsSystemTest : public ViewsSystemTest,
                            public ::testing::WithParamInterface<const char*> {};

TEST_P(ViewCallsSystemTest, ThatFailLeaveNothingOpenAndNoHalfFile) {
  run_.AddDatabase(L"x.nsf", R"({"notes": [
    {"id": "00000102", "class": "view", "view": {
      "columns": [{"constant": {"number": 2.5}}, {}, {}, {}],
      "entries": [{"note": "00000902", "values": [{"textList": ["a", "b"]}, {"number": 1.5},
                                                  {"dateTime": "2024-01-31T14:30:05Z"}]}]}},
    {"id": "00000902"}]})");
  run_.SetFaults(std::string(R"([{"entry": ")") + GetParam() + R"(", "call": 1, "status": 554}])");
  EXPECT_EQ(run_.Export(L"x.nsf", {L"-archive"}).exitCode, 0u);
  for (const std::string& name : ViewFiles()) {
    EXPECT_TRUE(run_.OutputFile(L"views\\" + std::wstring(name.begin(), name.end()))
                    .ends_with("</view>\r\n"));
  }
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
  EXPECT_EQ(run_.LedgerFault(1), "");
  EXPECT_GE(Calls(0, GetParam()), 1);
}

INSTANTIATE_TEST_SUITE_P(Calls, ViewCallsSystemTest,
                         ::testing::Values("NSFDbReplicaInfoGet", "NSFDbPathGet", "NSFDbInfoGet",
                                           "NSFDbInfoParse", "NSFDbIDGet", "NSFDbSpaceUsageScaled",
                                           "NSFDbModifiedTime", "OSGetIntlSettings", "TimeConstant",
                                           "NSFDbGetModifiedNoteTable", "NSFItemGetText",
                                           "NIFOpenCollection", "NIFReadEntries",
                                           "NIFPurgeCollection", "ODSLength", "ODSReadMemory",
                                           "NSFLocateSummaryValue", "ListGetNumEntries",
                                           "ListGetText", "ConvertFLOATToText", "TimeGMToLocalZone",
                                           "TimeExtractJulianDate", "TimeExtractTicks",
                                           "OSTranslate", "IDScan", "IDEntries", "OSLockObject"),
                         [](const auto& test) { return std::string(test.param); });

}  // namespace
}  // namespace larkspan::testing
