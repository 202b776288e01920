// Each call that the properties and the views make of the library fails once.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "dxl/DatabaseProperties.h"
#include "dxl/ViewExport.h"
#include "notes/LibraryFunctions.h"
#include "report/Progress.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

constexpr char kDatabase[] = R"({"title": "Herbs", "categories": "Garden", "notes": [
  {"id": "00000102", "class": "view", "items": [{"name": "$Flags", "text": "Y"}],
   "view": {"columns": [{"constant": {"number": 2.5}}, {}, {}, {}], "entries": [
     {"note": "00000902", "values": [{"textList": ["a", "b"]}, {"number": 1.5},
                                     {"dateTime": "2024-01-31T14:30:05Z"}]},
     {"category": true, "values": [{"text": "x"}]}]}},
  {"id": "00000106", "class": "folder", "items": [{"name": "$Flags", "text": "F"}],
   "view": {"columns": [{}], "entries": [{"note": "00000902", "values": [{"text": "y"}]}]}},
  {"id": "00000902"}]})";

// The parameter is the name of an entry point.
class ViewCallsTest : public NotesFixture, public testing::WithParamInterface<const char*> {
 protected:
  ViewCallsTest() {
    ClearStopRequestForTesting();
    SetArchive(true);
    MakeFolder(PathOf(L"views"));
    FoundLibraryFunctions().purgeCollection = reinterpret_cast<notes_api::PurgeCollectionFunction>(
        OriginalEntryPoint("NIFPurgeCollection"));
    WriteDatabase(kDatabase);
    Start();
  }

  void Export() {
    const CapturedOutput output;
    const Database database = OpenTestDatabase();
    if (ExportDatabaseProperties(database).ok()) ExportViews(database);
  }

  // How often a clean export calls the entry point.
  int CallsOfACleanExport() {
    const int before = Calls(GetParam());
    Export();
    return Calls(GetParam()) - before;
  }

  void ExpectWholeOrMissing(const std::wstring& name, const std::string& end) const {
    const std::wstring path = PathOf(name);
    EXPECT_TRUE(!Exists(path) || ReadBytes(path).ends_with(end)) << GetParam();
  }

  void DeleteFiles() const {
    for (const wchar_t* name : {L"db.dxl", L"views\\00000102.xml", L"views\\00000106.xml"}) {
      std::filesystem::remove(PathOf(name));
    }
  }
};

TEST_P(ViewCallsTest, ThatFailLeaveNothingOpenAndNoHalfFile) {
  const int calls = CallsOfACleanExport();
  ASSERT_GE(calls, 1);
  ASSERT_TRUE(Exists(PathOf(L"views\\00000106.xml")));
  for (int call = 1; call <= calls; ++call) {
    DeleteFiles();
    SetFaults(std::string(R"([{"entry": ")") + GetParam() + R"(", "call": )" +
              std::to_string(call) + R"(, "status": 554}])");
    Export();
    SetFaults("[]");
    EXPECT_EQ(LeftOpen(), kNothingOpen) << GetParam() << " " << call;
    ExpectWholeOrMissing(L"db.dxl", "</database>\r\n");
    ExpectWholeOrMissing(L"views\\00000102.xml", "</view>\r\n");
    ExpectWholeOrMissing(L"views\\00000106.xml", "</view>\r\n");
    EXPECT_FALSE(Exists(PathOf(L"temp.tmp")));
  }
}

// All but those that give handles back: what they fail to close stays open.
INSTANTIATE_TEST_SUITE_P(
    Calls, ViewCallsTest,
    testing::Values("NSFDbReplicaInfoGet", "NSFDbPathGet", "NSFDbInfoGet", "NSFDbInfoParse",
                    "NSFDbIDGet", "NSFDbSpaceUsageScaled", "NSFDbModifiedTime", "OSGetIntlSettings",
                    "TimeConstant", "NSFDbGetModifiedNoteTable", "IDScan", "IDEntries",
                    "NSFNoteOpen", "NSFItemGetText", "NSFItemInfo", "NIFOpenCollection",
                    "NIFReadEntries", "NIFPurgeCollection", "ODSLength", "ODSReadMemory",
                    "NSFLocateSummaryValue", "ListGetNumEntries", "ListGetText",
                    "ConvertFLOATToText", "TimeGMToLocalZone", "TimeExtractJulianDate",
                    "TimeExtractTicks", "OSTranslate", "OSLockObject"));

}  // namespace
}  // namespace larkspan
