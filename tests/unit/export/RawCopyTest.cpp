#include <gtest/gtest.h>

#include <string>

#include "notes/Notes.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/unit/export/NoteExportTest.h"

namespace larkspan {
namespace {

constexpr char kBody[] = R"({"name": "$Body", "richText": ["a"]})";
constexpr char kViewFormat[] = R"({"name": "$ViewFormat", "type": "0x0700", "bytes": "1D 00"})";
constexpr char kStripped[] = R"({"name": "Script", "type": 20, "text": "s"},
    {"name": "Code", "type": 20, "text": "c"}, {"name": "Title", "text": "t"})";

class RawCopyTest : public NoteExportTest {
 protected:
  const Lines both_ = {"design/0000090A.dxl", "design2/0000090A.dxl"};
  const std::wstring copy_ = L"design2\\0000090A.dxl";
};

TEST_F(RawCopyTest, IsMadeOfADesignNoteWithABody) {
  EXPECT_EQ(FilesFor("\"form\"", kBody), both_);
  EXPECT_EQ(ExporterOf(L"design\\0000090A.dxl"), 1);
  EXPECT_EQ(ExporterOf(copy_), 5);
}

TEST_F(RawCopyTest, IsMadeOfADesignNoteWithAViewFormat) {
  EXPECT_EQ(FilesFor("\"view\"", kViewFormat), both_);
}

TEST_F(RawCopyTest, IsMadeOnceOfADesignNoteWithBoth) {
  EXPECT_EQ(FilesFor("\"view\"", std::string(kBody) + "," + kViewFormat), both_);
  EXPECT_EQ(Calls("DXLExportNote"), 2);
}

TEST_F(RawCopyTest, IsMadeOfANoteWithTheDocumentBitAmongOthers) {
  EXPECT_EQ(FilesFor("513", kBody), both_);
}

TEST_F(RawCopyTest, IsNotMadeOfADesignNoteWithNeither) {
  EXPECT_EQ(FilesFor("\"form\"", kStripped), Lines{"design/0000090A.dxl"});
}

TEST_F(RawCopyTest, IsNotMadeForALongerItemName) {
  EXPECT_EQ(FilesFor("\"form\"", R"({"name": "$BodyX", "richText": ["a"]})"),
            Lines{"design/0000090A.dxl"});
}

TEST_F(RawCopyTest, IsNotMadeOfADocument) {
  EXPECT_EQ(FilesFor("1", kBody), Lines{"data/0000090A.dxl"});
}

TEST_F(RawCopyTest, IsNotMadeOutsideArchives) {
  SetArchive(false);
  EXPECT_EQ(FilesFor("\"form\"", kBody), Lines{"0000090A.dxl"});
}

TEST_F(RawCopyTest, IsNotMadeAfterAFailure) {
  OpenNoteOf("\"form\"", kBody);
  SetFaults("[" + Failing(1, 1000) + "]");
  EXPECT_EQ(Export().code(), 1000);
  EXPECT_EQ(Files(), Lines());
}

TEST_F(RawCopyTest, IsMadeAfterAFallback) {
  OpenNoteOf("\"form\"", kBody);
  SetFaults("[" + Failing(1, 1173) + "]");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(Files(), both_);
}

TEST_F(RawCopyTest, LacksEveryItemOfType20) {
  FilesFor("\"form\"", std::string(kBody) + "," + kStripped);
  EXPECT_FALSE(FileHasItem(copy_, "Script"));
  EXPECT_FALSE(FileHasItem(copy_, "Code"));
}

TEST_F(RawCopyTest, KeepsTheOtherItems) {
  FilesFor("\"form\"", std::string(kBody) + "," + kStripped);
  EXPECT_TRUE(FileHasItem(copy_, "Title"));
  EXPECT_TRUE(FileHasItem(copy_, "$Body"));
}

TEST_F(RawCopyTest, FirstFileKeepsTheItemsOfType20) {
  FilesFor("\"form\"", std::string(kBody) + "," + kStripped);
  EXPECT_TRUE(FileHasItem(L"design\\0000090A.dxl", "Script"));
}

TEST_F(RawCopyTest, ItemsAreDeletedFromTheOpenNoteOnly) {
  FilesFor("\"form\"", std::string(kBody) + "," + kStripped);
  EXPECT_FALSE(HasItem(note_, "Script"));
  EXPECT_TRUE(HasItem(OpenTestNote(database_, kNoteId), "Script"));
}

TEST_F(RawCopyTest, StatusOfTheCopyIsTheNotes) {
  OpenNoteOf("\"form\"", kBody);
  SetFaults("[" + Failing(5, 1000) + "]");
  EXPECT_EQ(Export().code(), 1000);
  EXPECT_EQ(Files(), Lines{"design/0000090A.dxl"});
}

TEST_F(RawCopyTest, DamageInTheCopyIsNotFallenBackFrom) {
  OpenNoteOf("\"form\"", kBody);
  SetFaults("[" + Failing(5, 1173) + "]");
  EXPECT_EQ(Export().code(), 1173);
  EXPECT_EQ(Calls("DXLExportNote"), 2);
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(RawCopyTest, CopyThatCannotBePlacedIsTheNotesFailure) {
  OpenNoteOf("\"form\"", kBody);
  WriteBytes(PathOf(copy_), "old");
  const PauseRecorder recorder;
  EXPECT_EQ(Export().code(), 264);
  EXPECT_EQ(ReadBytes(PathOf(copy_)), "old");
}

Lines deletions;

notes_api::STATUS LARKSPAN_NOTES_CALL RecordItemDeletion(notes_api::DHANDLE, const char* name,
                                                         notes_api::WORD length) {
  deletions.emplace_back(name, length);
  return 0;
}

TEST_F(RawCopyTest, ItemsOfType20AreDeletedInTheOrderCollected) {
  OpenNoteOf("\"form\"", std::string(kBody) + "," + kStripped);
  deletions.clear();
  const ReplacedEntryPoint replaced("NSFItemDelete", RecordItemDeletion);
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(deletions, (Lines{"Script", "Code"}));
}

}  // namespace
}  // namespace larkspan
