// Opening notes and what they tell of themselves.
#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

class Notes : public StandinTest {};

WORD ClassOf(DHANDLE note) {
  WORD noteClass = 0;
  NSFNoteGetInfo(note, kNoteInfoClass, &noteClass);
  return noteClass;
}

OriginatorId OriginatorIdOf(DHANDLE note) {
  OriginatorId id = {};
  NSFNoteGetInfo(note, kNoteInfoOriginatorId, &id);
  return id;
}

}  // namespace

TEST_F(Notes, ThatDoNotExistDoNotOpen) {
  const DHANDLE database = OpenDatabase(R"({"notes": [], "deleted": [{"id": "902"}]})");
  DHANDLE note = 0;
  EXPECT_EQ(NSFNoteOpen(database, 0x906, 0, &note), 551);
  EXPECT_EQ(NSFNoteOpen(database, 0x902, 0, &note), 551);
  EXPECT_EQ(note, 0U);
}

TEST_F(Notes, TellTheirClass) {
  OpenDatabase(R"({"notes": [{"id": "902"}, {"id": "906", "class": "form"},
    {"id": "90A", "class": "folder"}, {"id": "90E", "class": 4660}]})");
  EXPECT_EQ(ClassOf(OpenNote(0x902)), 1);
  EXPECT_EQ(ClassOf(OpenNote(0x906)), 4);
  EXPECT_EQ(ClassOf(OpenNote(0x90A)), 8);
  EXPECT_EQ(ClassOf(OpenNote(0x90E)), 0x1234);
}

TEST_F(Notes, TellTheirOriginatorId) {
  OpenDatabase(R"({"notes": [{"id": "902", "sequence": 9, "modified": "2000-01-01T00:00:01Z",
    "unid": "00112233445566778899AABBCCDDEEFF"}]})");
  const OriginatorId id = OriginatorIdOf(OpenNote(0x902));
  EXPECT_EQ(id.file[1], 0x00112233U);
  EXPECT_EQ(id.file[0], 0x44556677U);
  EXPECT_EQ(id.note[1], 0x8899AABBU);
  EXPECT_EQ(id.note[0], 0xCCDDEEFFU);
  EXPECT_EQ(id.sequence, 9U);
  EXPECT_EQ(id.sequenceTime.innards[0], 100U);
}

TEST_F(Notes, WithoutAGivenUniversalIdHaveOneOfTheirOwn) {
  OpenDatabase(R"({"notes": [{"id": "902"}, {"id": "906"}]})");
  const OriginatorId one = OriginatorIdOf(OpenNote(0x902));
  const OriginatorId two = OriginatorIdOf(OpenNote(0x906));
  EXPECT_TRUE(one.note[0] != two.note[0] || one.note[1] != two.note[1]);
}

TEST_F(Notes, TellWhetherTheyAreSignedOrSealed) {
  OpenDatabase(R"({"notes": [{"id": "902"}, {"id": "906", "signed": true},
    {"id": "90A", "sealedFor": ["CN=Imke"]}]})");
  BOOL isSigned = -1, isSealed = -1;
  EXPECT_EQ(NSFNoteIsSignedOrSealed(OpenNote(0x902), &isSigned, &isSealed), 0);
  EXPECT_EQ(isSigned, 0);
  EXPECT_EQ(isSealed, 0);
  EXPECT_EQ(NSFNoteIsSignedOrSealed(OpenNote(0x906), &isSigned, &isSealed), 1);
  EXPECT_EQ(isSigned, 1);
  EXPECT_EQ(isSealed, 0);
  EXPECT_EQ(NSFNoteIsSignedOrSealed(OpenNote(0x90A), nullptr, &isSealed), 1);
  EXPECT_EQ(isSealed, 1);
}

TEST_F(Notes, LeaveNothingOpenWhenClosed) {
  const DHANDLE database = OpenDatabase(DocumentWith(R"({"name": "A", "text": "a"})"));
  const DHANDLE note = OpenNote(kDocument);
  BlockId value = {};
  EXPECT_EQ(NSFItemInfo(note, "A", 1, nullptr, nullptr, &value, nullptr), 0);
  EXPECT_EQ(NSFNoteClose(note), 0);
  EXPECT_EQ(NSFDbClose(database), 0);
  EXPECT_EQ(StandinOpenCount(), 0U);
}

}  // namespace larkspan::standin_test
