// Items of open notes: finding, reading, walking and deleting them.
#include <algorithm>
#include <cstring>

#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

using namespace std::string_literals;

constexpr char kItems[] = R"(
  {"name": "Form", "text": "Plant"},
  {"name": "Tags", "textList": ["ä", "", "blue"]},
  {"name": "Twice", "text": "one"},
  {"name": "Height", "number": 1.5},
  {"name": "Twice", "text": "two"},
  {"name": "Years", "numbers": [1, 2]},
  {"name": "Sown", "dateTime": "2000-01-01T00:00:01Z"},
  {"name": "Cut", "dateTimes": ["2000-01-01", "T00:00:02Z"]},
  {"name": "Rule", "formula": "1"},
  {"name": "Part", "type": 20, "bytes": "01 FF", "flags": 4},
  {"name": "Body", "richText": ["text", {"picture": "p"}, {"record": -97, "bytes": "0A"}]})";

struct Found {
  WORD type = 0;
  BlockId item = {};
  BlockId value = {};
  DWORD length = 0;
};

std::string ValueBytes(const Found& found) {
  const auto* const pool = static_cast<const char*>(OSLockObject(found.value.pool));
  std::string bytes(pool + found.value.block, found.length);
  EXPECT_EQ(OSUnlockObject(found.value.pool), 1);
  return bytes;
}

struct Scanned {
  std::vector<std::string> names;
  std::vector<std::string> values;
  std::vector<WORD> flags;
  STATUS answer = 0;
};

STATUS LARKSPAN_NOTES_CALL OnItem(WORD, WORD flags, char* name, WORD nameLength, void* value,
                                  DWORD valueLength, void* context) {
  auto* const scanned = static_cast<Scanned*>(context);
  scanned->names.emplace_back(name, nameLength);
  scanned->values.emplace_back(static_cast<char*>(value), valueLength);
  scanned->flags.push_back(flags);
  return scanned->answer;
}

struct Records {
  std::vector<std::int16_t> types;
  std::vector<DWORD> lengths;
  STATUS answer = 0;
};

STATUS LARKSPAN_NOTES_CALL OnRecord(char*, WORD type, DWORD length, void* context) {
  auto* const records = static_cast<Records*>(context);
  records->types.push_back(static_cast<std::int16_t>(type));
  records->lengths.push_back(length);
  return records->answer;
}

class Items : public StandinTest {
 protected:
  Items() {
    OpenDatabase(DocumentWith(kItems));
    note_ = OpenNote(kDocument);
  }

  STATUS Find(const std::string& name, Found* found) const {
    return NSFItemInfo(note_, name.data(), static_cast<WORD>(name.size()), &found->item,
                       &found->type, &found->value, &found->length);
  }

  Found Get(const std::string& name) const {
    Found found;
    EXPECT_EQ(Find(name, &found), 0) << name;
    return found;
  }

  std::string Bytes(const std::string& name) const { return ValueBytes(Get(name)); }

  std::vector<std::string> Walk() const {
    std::vector<std::string> values;
    Found found;
    STATUS status =
        NSFItemInfo(note_, nullptr, 0, &found.item, &found.type, &found.value, &found.length);
    while (status == 0) {
      values.push_back(ValueBytes(found));
      status = NSFItemInfoNext(note_, found.item, nullptr, 0, &found.item, &found.type,
                               &found.value, &found.length);
    }
    return values;
  }

  STATUS Delete(const std::string& name) const {
    return NSFItemDelete(note_, name.data(), static_cast<WORD>(name.size()));
  }

  std::string Text(const std::string& name, WORD size = 256) const {
    std::string out(size, '*');
    const WORD length = NSFItemGetText(note_, name.c_str(), out.data(), size);
    EXPECT_EQ(out[length], '\0');
    return out.substr(0, length);
  }

  DHANDLE note_ = 0;
};

}  // namespace

TEST_F(Items, HaveValuesThatBeginWithTheirType) {
  EXPECT_EQ(Bytes("Form"), "\x00\x05Plant"s);
  EXPECT_EQ(Bytes("Tags"), "\x01\x05\x03\x00\x02\x00\x00\x00\x04\x00\x01\xE4"s + "blue");
  EXPECT_EQ(Bytes("Height"), "\x00\x03\x00\x00\x00\x00\x00\x00\xF8\x3F"s);
  EXPECT_EQ(Bytes("Years").substr(0, 6), "\x01\x03\x02\x00\x00\x00"s);
  EXPECT_EQ(Bytes("Sown"), "\x00\x04\x64\x00\x00\x00\x59\x68\x25\x00"s);
  EXPECT_EQ(Bytes("Cut"),
            "\x01\x04\x02\x00\x00\x00\xFF\xFF\xFF\xFF\x59\x68\x25\x00"
            "\xC8\x00\x00\x00\xFF\xFF\xFF\x00"s);
  EXPECT_EQ(Bytes("Rule"), "\x00\x06\x31"s);
  EXPECT_EQ(Bytes("Part"), "\x14\x00\x01\xFF"s);
}

TEST_F(Items, TellTheirTypeAndLength) {
  const Found body = Get("Body");
  EXPECT_EQ(body.type, 1);
  EXPECT_EQ(body.length, 2U + 12 + 9 + 9);
  EXPECT_EQ(Get("Part").type, 20);
}

TEST_F(Items, ThatAreMissingAreNotFound) {
  Found found;
  EXPECT_EQ(Find("Nothing", &found), 552);
  EXPECT_EQ(Find("For", &found), 552);
  EXPECT_EQ(Find("", &found), 552);
}

TEST_F(Items, AreWalkedInTheOrderOfTheNote) {
  const std::vector<std::string> values = Walk();
  ASSERT_EQ(values.size(), 11U);
  EXPECT_EQ(values[0], "\x00\x05Plant"s);
  EXPECT_EQ(values[2], "\x00\x05one"s);
  EXPECT_EQ(values[4], "\x00\x05two"s);
  EXPECT_EQ(values[10].substr(0, 2), "\x01\x00"s);
}

TEST_F(Items, OfOneNameAreWalkedByName) {
  Found found = Get("Twice");
  EXPECT_EQ(ValueBytes(found), "\x00\x05one"s);
  EXPECT_EQ(NSFItemInfoNext(note_, found.item, "Twice", 5, &found.item, &found.type, &found.value,
                            &found.length),
            0);
  EXPECT_EQ(ValueBytes(found), "\x00\x05two"s);
  EXPECT_EQ(NSFItemInfoNext(note_, found.item, "Twice", 5, nullptr, nullptr, nullptr, nullptr),
            552);
}

TEST_F(Items, AreScannedWithNamesThatAreNotEndedByANul) {
  Scanned scanned;
  EXPECT_EQ(NSFItemScan(note_, OnItem, &scanned), 0);
  ASSERT_EQ(scanned.names.size(), 11U);
  EXPECT_EQ(scanned.names[1], "Tags");
  EXPECT_EQ(scanned.names[4], "Twice");
  EXPECT_EQ(scanned.values[9], "\x14\x00\x01\xFF"s);
  EXPECT_EQ(scanned.flags[9], 4);
}

TEST_F(Items, ScanEndsWithTheStatusOfTheCallback) {
  Scanned scanned;
  scanned.answer = 5;
  EXPECT_EQ(NSFItemScan(note_, OnItem, &scanned), 5);
  EXPECT_EQ(scanned.names.size(), 1U);
}

TEST_F(Items, OfANameAreDeletedTogetherAndInMemoryOnly) {
  EXPECT_EQ(Delete("Twice"), 0);
  EXPECT_EQ(Delete("Twice"), 552);
  EXPECT_EQ(Walk().size(), 9U);
  note_ = OpenNote(kDocument);
  EXPECT_EQ(Walk().size(), 11U);
}

TEST_F(Items, GiveTheirText) {
  EXPECT_EQ(Text("Form"), "Plant");
  EXPECT_EQ(Text("Form", 4), "Pla");
  EXPECT_EQ(Text("Tags", 2), "");
  EXPECT_EQ(Text("Tags"), "\x01\xE4");
  EXPECT_EQ(Text("Height"), "");
  EXPECT_EQ(Text("Nothing"), "");
}

TEST_F(Items, GiveTheEntriesOfATextList) {
  EXPECT_EQ(NSFItemGetTextListEntries(note_, "Tags"), 3);
  EXPECT_EQ(NSFItemGetTextListEntries(note_, "Form"), 1);
  EXPECT_EQ(NSFItemGetTextListEntries(note_, "Height"), 0);
  EXPECT_EQ(NSFItemGetTextListEntries(note_, "Nothing"), 0);
  char out[] = "******";
  EXPECT_EQ(NSFItemGetTextListEntry(note_, "Tags", 2, out, 5), 4);
  EXPECT_STREQ(out, "blue**");
  EXPECT_EQ(NSFItemGetTextListEntry(note_, "Tags", 0, out, 1), 0);
  EXPECT_EQ(NSFItemGetTextListEntry(note_, "Tags", 1, out, 5), 0);
  EXPECT_EQ(NSFItemGetTextListEntry(note_, "Tags", 3, out, 5), 0);
}

TEST_F(Items, OfRichTextGiveTheirRecords) {
  const Found body = Get("Body");
  Records records;
  EXPECT_EQ(EnumCompositeBuffer(body.value, body.length, OnRecord, &records), 0);
  EXPECT_EQ(records.types, (std::vector<std::int16_t>{101, 159, -97}));
  EXPECT_EQ(records.lengths, (std::vector<DWORD>{12, 9, 9}));
}

TEST_F(Items, RecordsEndWithTheStatusOfTheCallback) {
  const Found body = Get("Body");
  Records records;
  records.answer = 9;
  EXPECT_EQ(EnumCompositeBuffer(body.value, body.length, OnRecord, &records), 9);
  EXPECT_EQ(records.types.size(), 1U);
}

TEST_F(Items, OfOtherTypesHaveNoRecords) {
  const Found form = Get("Form");
  Records records;
  EXPECT_EQ(EnumCompositeBuffer(form.value, form.length, OnRecord, &records), 560);
  EXPECT_TRUE(records.types.empty());
}

TEST_F(Items, LargerThanABlockNumberAreReachedAll) {
  OpenDatabase(
      DocumentWith(R"({"name": "A", "text": "a"}, {"name": "Long", "type": 20, "text": ")" +
                   std::string(200000, 'x') + R"("}, {"name": "Z", "text": "z"})"));
  note_ = OpenNote(kDocument);
  EXPECT_EQ(Bytes("Long").size(), 200002U);
  EXPECT_EQ(Bytes("Z"), "\x00\x05z"s);
}

}  // namespace larkspan::standin_test
