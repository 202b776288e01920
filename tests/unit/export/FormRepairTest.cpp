#include <gtest/gtest.h>

#include <string>

#include "notes/Notes.h"
#include "tests/unit/export/NoteExportTest.h"

namespace larkspan {
namespace {

constexpr int kFormNeedsRepair = 575;

// Fields A, B, C and D; their items are of a damaging type, text, formula and rich text; E is no
// field.
constexpr char kForm[] = R"(
    {"name": "$Fields", "textList": ["A", "B", "C", "D", "Missing"]},
    {"name": "$$A", "type": 20, "text": "a"},
    {"name": "$$B", "text": "b"},
    {"name": "$$C", "formula": "c"},
    {"name": "$$D", "richText": ["d"]},
    {"name": "$$E", "type": 20, "text": "e"})";

class FormRepairTest : public NoteExportTest {
 protected:
  // Exports a note whose first export by the normal exporter asks for a repair.
  Status ExportRepaired(const std::string& noteClass, const std::string& items) {
    OpenNoteOf(noteClass, items);
    SetFaults("[" + Failing(1, kFormNeedsRepair, 1) + "]");
    return Export();
  }

  const std::wstring file_ = L"design\\0000090A.dxl";
};

TEST_F(FormRepairTest, FormIsExportedASecondTimeByTheSameExporter) {
  EXPECT_TRUE(ExportRepaired("\"form\"", kForm).ok());
  EXPECT_EQ(Calls("DXLExportNote"), 2);
  EXPECT_EQ(ExporterOf(file_), 1);
}

TEST_F(FormRepairTest, ItemsOfFieldsThatAreNeitherTextNorFormulaAreDeleted) {
  EXPECT_TRUE(ExportRepaired("\"form\"", kForm).ok());
  EXPECT_FALSE(FileHasItem(file_, "$$A"));
  EXPECT_FALSE(FileHasItem(file_, "$$D"));
}

TEST_F(FormRepairTest, TextAndFormulaItemsOfFieldsStay) {
  EXPECT_TRUE(ExportRepaired("\"form\"", kForm).ok());
  EXPECT_TRUE(FileHasItem(file_, "$$B"));
  EXPECT_TRUE(FileHasItem(file_, "$$C"));
}

TEST_F(FormRepairTest, ItemsThatBelongToNoFieldStay) {
  EXPECT_TRUE(ExportRepaired("\"form\"", kForm).ok());
  EXPECT_TRUE(FileHasItem(file_, "$$E"));
  EXPECT_TRUE(FileHasItem(file_, "$Fields"));
}

TEST_F(FormRepairTest, DatabaseIsNotChanged) {
  EXPECT_TRUE(ExportRepaired("\"form\"", kForm).ok());
  EXPECT_TRUE(HasItem(OpenTestNote(database_, kNoteId), "$$A"));
}

TEST_F(FormRepairTest, RepairIsNotLogged) {
  EXPECT_TRUE(ExportRepaired("\"form\"", kForm).ok());
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(FormRepairTest, FieldNamesAreReadUpTo253Bytes) {
  const std::string name(253, 'f');
  EXPECT_TRUE(ExportRepaired("\"form\"", R"({"name": "$Fields", "textList": [")" + name +
                                             R"(extra"]}, {"name": "$$)" + name +
                                             R"(", "type": 20, "text": "a"})")
                  .ok());
  EXPECT_FALSE(FileHasItem(file_, "$$" + name));
}

TEST_F(FormRepairTest, FormWithoutFieldsIsSimplyExportedAgain) {
  EXPECT_TRUE(ExportRepaired("\"form\"", R"({"name": "$$", "type": 20, "text": "a"})").ok());
  EXPECT_EQ(Calls("DXLExportNote"), 2);
  EXPECT_EQ(Calls("NSFItemDelete"), 0);
}

TEST_F(FormRepairTest, FormWithAnEmptyFieldListIsSimplyExportedAgain) {
  EXPECT_TRUE(ExportRepaired("\"form\"", R"({"name": "$Fields", "textList": []},
                                            {"name": "$$", "type": 20, "text": "a"})")
                  .ok());
  EXPECT_EQ(Calls("DXLExportNote"), 2);
  EXPECT_EQ(Calls("NSFItemDelete"), 0);
}

TEST_F(FormRepairTest, NoteThatIsNoFormIsSimplyExportedAgain) {
  EXPECT_TRUE(ExportRepaired("\"agent\"", kForm).ok());
  EXPECT_EQ(Calls("DXLExportNote"), 2);
  EXPECT_TRUE(FileHasItem(file_, "$$A"));
}

TEST_F(FormRepairTest, FormBitWithOthersIsNoForm) {
  EXPECT_TRUE(ExportRepaired("516", kForm).ok());
  EXPECT_TRUE(FileHasItem(file_, "$$A"));
}

TEST_F(FormRepairTest, DocumentIsSimplyExportedAgain) {
  EXPECT_TRUE(ExportRepaired("1", kForm).ok());
  EXPECT_EQ(Files(), Lines{"data/0000090A.dxl"});
}

TEST_F(FormRepairTest, NoteWithPicturesIsExportedAgainWithoutConversion) {
  OpenNoteOf("1", R"({"name": "Body", "richText": [{"picture": "a"}]})");
  SetFaults("[" + Failing(2, kFormNeedsRepair, 1) + "]");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(ExporterOf(L"data\\0000090A.dxl"), 2);
}

TEST_F(FormRepairTest, StatusOfTheSecondExportIsTaken) {
  OpenNoteOf("\"form\"", kForm);
  SetFaults("[" + Failing(1, kFormNeedsRepair, 1) + ", " + Failing(1, 1000, 2) + "]");
  EXPECT_EQ(Export().code(), 1000);
}

TEST_F(FormRepairTest, SecondExportThatAsksAgainIsNotRepairedAgain) {
  OpenNoteOf("\"form\"", kForm);
  SetFaults("[" + Failing(1, kFormNeedsRepair) + "]");
  EXPECT_EQ(Export().code(), kFormNeedsRepair);
  EXPECT_EQ(Calls("DXLExportNote"), 2);
}

TEST_F(FormRepairTest, SecondExportThatFindsDamageFallsBack) {
  OpenNoteOf("\"form\"", kForm);
  SetFaults("[" + Failing(1, kFormNeedsRepair, 1) + ", " + Failing(1, 1173, 2) + "]");
  EXPECT_TRUE(Export().ok());
  EXPECT_EQ(ExporterOf(file_), 3);
}

TEST_F(FormRepairTest, TopBitsOfTheStatusMakeItAnotherOne) {
  OpenNoteOf("\"form\"", kForm);
  SetFaults("[" + Failing(1, 0x4000 + kFormNeedsRepair) + "]");
  EXPECT_EQ(Export().code(), 0x4000 + kFormNeedsRepair);
  EXPECT_EQ(Calls("DXLExportNote"), 1);
}

}  // namespace
}  // namespace larkspan
