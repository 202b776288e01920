#include <gtest/gtest.h>

#include <string>

#include "tests/support/ReplacedEntryPoint.h"
#include "tests/unit/export/NoteExportTest.h"

namespace larkspan {
namespace {

std::string Named(const std::string& name) {
  return R"({"name": "$Name", "text": ")" + name + "\"}";
}

using NoteNameTest = NoteExportTest;

TEST_F(NoteNameTest, DocumentGoesToData) {
  EXPECT_EQ(FilesFor("1", ""), Lines{"data/0000090A.dxl"});
}

TEST_F(NoteNameTest, DesignNoteGoesToDesign) {
  EXPECT_EQ(FilesFor("\"agent\"", ""), Lines{"design/0000090A.dxl"});
}

TEST_F(NoteNameTest, DocumentBitWithOthersGoesToDesign) {
  EXPECT_EQ(FilesFor("513", ""), Lines{"design/0000090A.dxl"});
}

TEST_F(NoteNameTest, ProfileNameOnADesignNoteDoesNotMatter) {
  EXPECT_EQ(FilesFor("\"agent\"", Named("$profile")), Lines{"design/0000090A.dxl"});
}

TEST_F(NoteNameTest, NameOfExactlyEightCharactersIsAProfile) {
  EXPECT_EQ(FilesFor("1", Named("$profile")), Lines{"profile/0000090A.dxl"});
}

TEST_F(NoteNameTest, LongerNameIsAProfile) {
  EXPECT_EQ(FilesFor("1", Named("$profile_014calendarprofile")), Lines{"profile/0000090A.dxl"});
}

TEST_F(NoteNameTest, NameLongerThanItsPlaceIsAProfile) {
  EXPECT_EQ(FilesFor("1", Named("$profile" + std::string(1000, 'a'))),
            Lines{"profile/0000090A.dxl"});
}

TEST_F(NoteNameTest, ShorterNameIsNoProfile) {
  EXPECT_EQ(FilesFor("1", Named("$prof")), Lines{"data/0000090A.dxl"});
}

TEST_F(NoteNameTest, NameOfSevenCharactersIsNoProfile) {
  EXPECT_EQ(FilesFor("1", Named("$profil")), Lines{"data/0000090A.dxl"});
}

TEST_F(NoteNameTest, ProfileWordBehindOtherTextIsNoProfile) {
  EXPECT_EQ(FilesFor("1", Named("a$profile")), Lines{"data/0000090A.dxl"});
}

TEST_F(NoteNameTest, LibraryDecidesThatUpperCaseDiffers) {
  EXPECT_EQ(FilesFor("1", Named("$PROFILE")), Lines{"data/0000090A.dxl"});
}

TEST_F(NoteNameTest, LibraryDecidesThatUpperCaseIsEqual) {
  OpenNoteOf("1", Named("$PROFILE"));
  // A comparison that ends early gives zero, which means equal.
  SetFaults(R"([{"entry": "IntlTextCompare", "status": 1}])");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(Files(), Lines{"profile/0000090A.dxl"});
}

TEST_F(NoteNameTest, OutsideArchivesEveryNoteGoesToTheOutputFolder) {
  SetArchive(false);
  EXPECT_EQ(FilesFor("\"form\"", Named("$profile")), Lines{"0000090A.dxl"});
}

TEST_F(NoteNameTest, OutsideArchivesTheNameIsNotRead) {
  SetArchive(false);
  FilesFor("1", Named("$profile"));
  EXPECT_EQ(Calls("NSFItemGetText"), 0);
}

TEST_F(NoteNameTest, NoteIdHasEightUpperCaseDigits) {
  OpenNoteOf("1", "");
  EXPECT_TRUE(ExportNote(exporters_, note_, 0xFEDCBA98).ok());
  EXPECT_EQ(Files(), Lines{"data/FEDCBA98.dxl"});
}

// The exporter that writes a note: 1 normal, 2 no convert.
class ExporterChoiceTest : public NoteExportTest {
 protected:
  int ExporterFor(const std::string& items) {
    OpenNoteOf("1", items);
    EXPECT_TRUE(Export().ok());
    return ExporterOf(L"data\\0000090A.dxl");
  }
};

TEST_F(ExporterChoiceTest, NoteWithoutItemsIsNormal) { EXPECT_EQ(ExporterFor(""), 1); }

TEST_F(ExporterChoiceTest, RichTextWithoutPictureIsNormal) {
  EXPECT_EQ(ExporterFor(R"({"name": "Body", "richText": ["a", {"record": 158}]})"), 1);
}

TEST_F(ExporterChoiceTest, PictureIsNotConverted) {
  EXPECT_EQ(ExporterFor(R"({"name": "Body", "richText": ["a", {"picture": "b"}]})"), 2);
}

TEST_F(ExporterChoiceTest, PictureInALaterItemIsNotConverted) {
  EXPECT_EQ(ExporterFor(R"({"name": "A", "text": "a"}, {"name": "B", "richText": ["b"]},
                           {"name": "C", "richText": [{"picture": "c"}]})"),
            2);
}

TEST_F(ExporterChoiceTest, NegativeRecordTypeIsNoPicture) {
  EXPECT_EQ(ExporterFor(R"({"name": "Body", "richText": [{"record": -97}, {"record": -159}]})"), 1);
}

TEST_F(ExporterChoiceTest, PictureRecordOutsideRichTextDoesNotMatter) {
  EXPECT_EQ(ExporterFor(R"({"name": "Body", "type": 2, "bytes": "9F 00 00 00 08 00 00 00"})"), 1);
}

TEST_F(ExporterChoiceTest, WalkThatFailsEndsTheSearch) {
  OpenNoteOf("1", R"({"name": "A", "text": "a"}, {"name": "B", "richText": [{"picture": "b"}]})");
  SetFaults(R"([{"entry": "NSFItemInfoNext", "status": 1000}])");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(ExporterOf(L"data\\0000090A.dxl"), 1);
}

TEST_F(ExporterChoiceTest, PictureIsLookedForOutsideArchivesToo) {
  SetArchive(false);
  OpenNoteOf("1", R"({"name": "Body", "richText": [{"picture": "b"}]})");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(ExporterOf(L"0000090A.dxl"), 2);
}

notes_api::WORD sizeForTheName = 0;

notes_api::WORD LARKSPAN_NOTES_CALL RecordSize(notes_api::DHANDLE, const char*, char*,
                                               notes_api::WORD size) {
  sizeForTheName = size;
  return 0;
}

TEST_F(NoteNameTest, NameOfADocumentHasAPlaceOf256Bytes) {
  const ReplacedEntryPoint replaced("NSFItemGetText", RecordSize);
  OpenNoteOf("1", "");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(sizeForTheName, 256);
}

}  // namespace
}  // namespace larkspan
