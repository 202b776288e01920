#include "dxl/ViewExport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "dxl/NumberSettings.h"
#include "notes/LibraryFunctions.h"
#include "report/Progress.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/StopRequest.h"

namespace larkspan {
namespace {

class ViewExportTest : public NotesFixture {
 protected:
  ViewExportTest() {
    ClearStopRequestForTesting();
    SetArchive(true);
    MakeFolder(PathOf(L"views"));
    AddConfiguration("StandinDecimalSeparator=,");
    FoundLibraryFunctions().purgeCollection = reinterpret_cast<notes_api::PurgeCollectionFunction>(
        OriginalEntryPoint("NIFPurgeCollection"));
  }
  ~ViewExportTest() override { ClearStopRequestForTesting(); }

  // Exports the views of a database with these notes in JSON; gives what went to standard output.
  std::string Export(const std::string& notes, const std::string& faults = "[]") {
    WriteDatabase("{\"notes\": [" + notes + "]}");
    Start();
    const Database database = OpenTestDatabase();
    SetFaults(faults);
    const CapturedOutput output;
    ExportViews(database);
    SetFaults("[]");
    return output.Flushed();
  }

  bool IsWritten(const std::wstring& name) const { return Exists(PathOf(L"views\\" + name)); }
};

constexpr char kViewFolderAndHidden[] =
    R"({"id": "0000011E", "class": "folder", "items": [{"name": "$Flags", "text": "F"}],
        "view": {"entries": []}},
       {"id": "0000011A", "class": "view", "view": {"columns": [{"title": "Height"}],
        "entries": [{"note": "000008FA", "values": [{"number": 2.5}]}]}},
       {"id": "00000122", "class": "view", "items": [{"name": "$Flags", "text": "G"}],
        "view": {"entries": []}},
       {"id": "000008FA"})";

TEST_F(ViewExportTest, ProgressCountsEveryViewAndNamesEach) {
  EXPECT_EQ(Export(kViewFolderAndHidden),
            "PROGRESS: VIEWCOUNT: 3\r\nPROGRESS: VIEW: 0000011A\r\nPROGRESS: VIEW: 0000011E\r\n"
            "PROGRESS: VIEW: 00000122\r\n");
}

TEST_F(ViewExportTest, EachExportedViewHasAFile) {
  Export(kViewFolderAndHidden);
  EXPECT_TRUE(IsWritten(L"0000011A.xml"));
  EXPECT_TRUE(IsWritten(L"0000011E.xml"));
  EXPECT_FALSE(IsWritten(L"00000122.xml"));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ViewExportTest, NumbersHaveAFullStop) {
  Export(kViewFolderAndHidden);
  EXPECT_NE(ReadBytes(PathOf(L"views\\0000011A.xml")).find("<number>2.5</number>"),
            std::string::npos);
  EXPECT_STREQ(GetNumberSettings().decimalSeparator, ".");
}

TEST_F(ViewExportTest, DatabaseWithoutViewsCountsNone) {
  EXPECT_EQ(Export(R"({"id": "000008FA"})"), "PROGRESS: VIEWCOUNT: 0\r\n");
}

TEST_F(ViewExportTest, ListIsOfAllViewsSinceTheEarliestTime) {
  Export("");
  const std::string arguments = Arguments("NSFDbGetModifiedNoteTable");
  EXPECT_EQ(arguments, R"({"classMask":8,"since":"-47131124T000000,00+00"})");
}

TEST_F(ViewExportTest, ListThatFailsIsSilent) {
  EXPECT_EQ(
      Export(kViewFolderAndHidden, R"([{"entry": "NSFDbGetModifiedNoteTable", "status": 6409}])"),
      "");
  EXPECT_FALSE(IsWritten(L"0000011A.xml"));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(ViewExportTest, ViewThatFailsDoesNotKeepTheNextFromItsFile) {
  Export(kViewFolderAndHidden, R"([{"entry": "NIFReadEntries", "call": 1, "status": 6409}])");
  EXPECT_FALSE(IsWritten(L"0000011A.xml"));
  EXPECT_TRUE(IsWritten(L"0000011E.xml"));
}

// Asks the run to stop while the first view is being read.
notes_api::STATUS LARKSPAN_NOTES_CALL StopAndOpen(notes_api::DHANDLE database,
                                                  notes_api::NOTEID noteId, notes_api::WORD flags,
                                                  notes_api::DHANDLE* note) {
  RequestStop();
  return Original("NSFNoteOpen", StopAndOpen)(database, noteId, flags, note);
}

TEST_F(ViewExportTest, StopRequestEndsBeforeTheNextView) {
  const ReplacedEntryPoint replaced("NSFNoteOpen", StopAndOpen);
  EXPECT_EQ(Export(kViewFolderAndHidden), "PROGRESS: VIEWCOUNT: 3\r\nPROGRESS: VIEW: 0000011A\r\n");
  EXPECT_TRUE(IsWritten(L"0000011A.xml"));
  EXPECT_FALSE(IsWritten(L"0000011E.xml"));
}

}  // namespace
}  // namespace larkspan
