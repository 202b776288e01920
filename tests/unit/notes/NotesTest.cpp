#include "notes/Notes.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <stdexcept>
#include <string>

#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::DHANDLE;
using notes_api::WORD;

// Each test opens the one note of a database, a document with the items that the test gives.
class OpenNoteTest : public NotesFixture {
 protected:
  void OpenWith(const std::string& members) {
    WriteDatabase(R"({"notes": [{"id": "00000902", )" + members + "}]}");
    Start();
    database_ = OpenTestDatabase();
    note_ = OpenTestNote(database_, 0x902);
  }

  void OpenWithItems(const std::string& items) { OpenWith("\"items\": [" + items + "]"); }

  Database database_;
  Note note_;
};

TEST_F(OpenNoteTest, NoteIsOpenedByItsIdWithFlagsZero) {
  OpenWith(R"("class": "document")");
  EXPECT_EQ(Arguments("NSFNoteOpen"), R"({"flags":0,"noteId":2306})");
}

TEST_F(OpenNoteTest, MissingNoteDoesNotOpen) {
  OpenWith(R"("class": "document")");
  EXPECT_EQ(OpenNote(database_, 0x906, note_).code(), 551);
  EXPECT_EQ(note_.get(), 0u);
}

TEST_F(OpenNoteTest, ClassIsTheWholeWord) {
  OpenWith(R"("class": 16897)");
  EXPECT_EQ(GetNoteClass(note_), 0x4201);
}

TEST_F(OpenNoteTest, ClassThatIsNotToldIsNone) {
  OpenWith(R"("class": "document")");
  SetFaults(R"([{"entry": "NSFNoteGetInfo", "status": 1}])");
  EXPECT_EQ(GetNoteClass(note_), 0);
}

TEST_F(OpenNoteTest, OriginatorIdIsFileAndNotePart) {
  OpenWith(R"("unid": "1111111122222222333333334444444F", "sequence": 9)");
  const notes_api::OriginatorId id = GetOriginatorId(note_);
  EXPECT_EQ(id.file[1], 0x11111111u);
  EXPECT_EQ(id.file[0], 0x22222222u);
  EXPECT_EQ(id.note[1], 0x33333333u);
  EXPECT_EQ(id.note[0], 0x4444444Fu);
  EXPECT_EQ(id.sequence, 9u);
}

TEST_F(OpenNoteTest, PlainNoteIsNotSealed) {
  OpenWith(R"("class": "document")");
  EXPECT_FALSE(IsSealed(note_));
}

TEST_F(OpenNoteTest, SignedNoteIsNotSealed) {
  OpenWith(R"("signed": true)");
  EXPECT_FALSE(IsSealed(note_));
}

TEST_F(OpenNoteTest, EncryptedNoteIsSealed) {
  OpenWith(R"("sealedFor": ["CN=Imke"])");
  EXPECT_TRUE(IsSealed(note_));
}

TEST_F(OpenNoteTest, ItemTextIsReadByName) {
  OpenWithItems(R"({"name": "$Name", "text": "$profile_1"})");
  EXPECT_EQ(GetItemText(note_, "$Name", 256), "$profile_1");
}

TEST_F(OpenNoteTest, TextOfAMissingItemIsEmpty) {
  OpenWithItems(R"({"name": "$Title", "text": "a"})");
  EXPECT_EQ(GetItemText(note_, "$Name", 256), "");
}

TEST_F(OpenNoteTest, ItemTextIsCutToTheCapacity) {
  OpenWithItems(R"({"name": "$Name", "text": ")" + std::string(300, 'a') + "\"}");
  EXPECT_EQ(GetItemText(note_, "$Name", 256), std::string(255, 'a'));
}

WORD LARKSPAN_NOTES_CALL SayMoreThanFits(DHANDLE, const char*, char*, WORD) { return 5000; }

TEST_F(OpenNoteTest, ItemTextStaysInItsPlaceWhateverLengthTheLibraryTells) {
  OpenWithItems("");
  const ReplacedEntryPoint replaced("NSFItemGetText", SayMoreThanFits);
  EXPECT_EQ(GetItemText(note_, "$Name", 256).size(), 256u);
}

TEST_F(OpenNoteTest, ItemIsThereOrNot) {
  OpenWithItems(R"({"name": "$Body", "text": "a"})");
  EXPECT_TRUE(HasItem(note_, "$Body"));
  EXPECT_FALSE(HasItem(note_, "$BodyX"));
}

TEST_F(OpenNoteTest, ItemIsAskedForByTheWholeNameOnly) {
  OpenWithItems(R"({"name": "$BodyX", "text": "a"})");
  EXPECT_TRUE(HasItem(note_, std::string_view("$BodyXY", 6)));
  EXPECT_FALSE(HasItem(note_, std::string_view("$BodyXY", 5)));
}

TEST_F(OpenNoteTest, ItemTypeIsTheDataType) {
  OpenWithItems(R"({"name": "A", "type": 20, "text": "a"}, {"name": "B", "formula": "b"})");
  std::uint16_t type = 0;
  EXPECT_TRUE(GetItemType(note_, "A", type));
  EXPECT_EQ(type, 20);
  EXPECT_TRUE(GetItemType(note_, "B", type));
  EXPECT_EQ(type, 0x0600);
}

TEST_F(OpenNoteTest, MissingItemHasNoType) {
  OpenWithItems("");
  std::uint16_t type = 7;
  EXPECT_FALSE(GetItemType(note_, "A", type));
  EXPECT_EQ(type, 7);
}

TEST_F(OpenNoteTest, RecordIsFoundInAnyRichTextItem) {
  OpenWithItems(R"({"name": "A", "text": "a"}, {"name": "B", "richText": ["b"]},
                   {"name": "C", "richText": ["c", {"picture": "d"}]})");
  EXPECT_TRUE(HasRichTextRecord(note_, 159));
}

TEST_F(OpenNoteTest, RecordOfAnotherTypeIsNotTaken) {
  OpenWithItems(R"({"name": "A", "richText": ["a", {"record": 158}, {"record": 160}]})");
  EXPECT_FALSE(HasRichTextRecord(note_, 159));
}

TEST_F(OpenNoteTest, RecordTypesAreSigned) {
  OpenWithItems(R"({"name": "A", "richText": [{"record": -97}]})");
  EXPECT_FALSE(HasRichTextRecord(note_, 159));
  EXPECT_TRUE(HasRichTextRecord(note_, -97));
}

TEST_F(OpenNoteTest, ItemsThatAreNotRichTextAreNotEnumerated) {
  OpenWithItems(R"({"name": "A", "text": "a"},
                   {"name": "B", "type": 20, "bytes": "9F 00 00 00 08 00 00 00"})");
  EXPECT_FALSE(HasRichTextRecord(note_, 159));
  EXPECT_EQ(Calls("EnumCompositeBuffer"), 0);
}

TEST_F(OpenNoteTest, WalkStopsAtTheFirstItemWithTheRecord) {
  OpenWithItems(R"({"name": "A", "richText": [{"picture": "a"}]}, {"name": "B", "richText": []})");
  EXPECT_TRUE(HasRichTextRecord(note_, 159));
  EXPECT_EQ(Calls("EnumCompositeBuffer"), 1);
  EXPECT_EQ(Calls("NSFItemInfoNext"), 0);
}

TEST_F(OpenNoteTest, WalkStopsWhenACallFails) {
  OpenWithItems(R"({"name": "A", "text": "a"}, {"name": "B", "richText": [{"picture": "b"}]})");
  SetFaults(R"([{"entry": "NSFItemInfoNext", "status": 1000}])");
  EXPECT_FALSE(HasRichTextRecord(note_, 159));
}

TEST_F(OpenNoteTest, NoteWithoutItemsHasNoRecord) {
  OpenWithItems("");
  EXPECT_FALSE(HasRichTextRecord(note_, 159));
}

TEST_F(OpenNoteTest, TextListEntriesAreCounted) {
  OpenWithItems(R"({"name": "$Fields", "textList": ["A", "B", "C"]})");
  EXPECT_EQ(CountTextListEntries(note_, "$Fields"), 3);
}

TEST_F(OpenNoteTest, MissingTextListHasNoEntries) {
  OpenWithItems("");
  EXPECT_EQ(CountTextListEntries(note_, "$Fields"), 0);
}

TEST_F(OpenNoteTest, TextListEntriesAreReadByIndex) {
  OpenWithItems(R"({"name": "$Fields", "textList": ["A", "Second", ""]})");
  EXPECT_EQ(GetTextListEntry(note_, "$Fields", 0, 253), "A");
  EXPECT_EQ(GetTextListEntry(note_, "$Fields", 1, 253), "Second");
  EXPECT_EQ(GetTextListEntry(note_, "$Fields", 2, 253), "");
}

TEST_F(OpenNoteTest, TextListEntryIsCutToTheLimit) {
  OpenWithItems(R"({"name": "$Fields", "textList": [")" + std::string(300, 'a') + "\"]}");
  EXPECT_EQ(GetTextListEntry(note_, "$Fields", 0, 253), std::string(253, 'a'));
}

WORD LARKSPAN_NOTES_CALL SayLongerEntry(DHANDLE, const char*, WORD, char*, WORD) { return 5000; }

TEST_F(OpenNoteTest, TextListEntryStaysInItsPlaceWhateverLengthTheLibraryTells) {
  OpenWithItems("");
  const ReplacedEntryPoint replaced("NSFItemGetTextListEntry", SayLongerEntry);
  EXPECT_EQ(GetTextListEntry(note_, "$Fields", 0, 253).size(), 253u);
}

TEST_F(OpenNoteTest, ItemsOfATypeAreFoundInTheNotesOrder) {
  OpenWithItems(R"({"name": "B", "type": 20, "text": "b"}, {"name": "A", "text": "a"},
                   {"name": "C", "type": 21, "text": "c"}, {"name": "A2", "type": 20, "bytes": ""},
                   {"name": "B", "type": 20, "text": "again"})");
  EXPECT_EQ(FindItemsOfType(note_, 20), (Lines{"B", "A2", "B"}));
}

// A status of the callback ends the scan.
notes_api::STATUS LARKSPAN_NOTES_CALL ScanOddItems(DHANDLE, notes_api::ItemCallback callback,
                                                   void* context) {
  char name[] = {'A', 'B', 'C'};
  char value[] = {20, 0};
  if (const auto status = callback(0, 0, name, 1, nullptr, 0, context); status != 0) return status;
  if (const auto status = callback(0, 0, name, 2, value, 1, context); status != 0) return status;
  return callback(0, 0, name, 3, value, 2, context);
}

TEST_F(OpenNoteTest, ItemsWithoutATypeWordArePassedOver) {
  OpenWithItems("");
  const ReplacedEntryPoint replaced("NSFItemScan", ScanOddItems);
  EXPECT_EQ(FindItemsOfType(note_, 20), Lines{"ABC"});
}

TEST_F(OpenNoteTest, ItemIsDeletedFromTheOpenNoteOnly) {
  OpenWithItems(R"({"name": "A", "text": "a"}, {"name": "B", "text": "b"})");
  DeleteItem(note_, "A");
  EXPECT_FALSE(HasItem(note_, "A"));
  EXPECT_TRUE(HasItem(note_, "B"));
  EXPECT_TRUE(HasItem(OpenTestNote(database_, 0x902), "A"));
}

TEST_F(OpenNoteTest, DeletingAMissingItemChangesNothing) {
  OpenWithItems(R"({"name": "A", "text": "a"})");
  DeleteItem(note_, "B");
  EXPECT_TRUE(HasItem(note_, "A"));
}

notes_api::STATUS LARKSPAN_NOTES_CALL ScanNameless(DHANDLE, notes_api::ItemCallback callback,
                                                   void* context) {
  constexpr WORD kNameLength = 3;
  WORD value = notes_api::kTypeText;
  callback(0, 0, nullptr, kNameLength, &value, sizeof value, context);
  return 0;
}

// A name that is missing although it has a length cannot be copied.
TEST_F(OpenNoteTest, ExceptionOverAnItemComesOutBehindTheScan) {
  OpenWith(R"("class": "document")");
  const ReplacedEntryPoint replaced("NSFItemScan", ScanNameless);
  EXPECT_THROW(FindItemsOfType(note_, notes_api::kTypeText), std::logic_error);
}

}  // namespace
}  // namespace larkspan
