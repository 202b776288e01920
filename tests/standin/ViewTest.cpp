// Reading the entries of views.
#include "standin/StandinHooks.h"
#include "tests/standin/ViewReading.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr NOTEID kReadView = 0x90A;
constexpr STATUS kEntryTooLarge = 568;
constexpr STATUS kNoSuchPosition = 574;

class Views : public StandinTest {
 protected:
  // A database of one view.
  DHANDLE OpenView(const std::string& view) {
    return OpenDatabase(R"({"notes": [{"id": "90A", "class": "view", "view": )" + view + "}]}");
  }

  std::vector<Entry> ReadOnly(const std::string& view) {
    return ReadView(OpenView(view), kReadView);
  }
};

using Positions = std::vector<std::vector<DWORD>>;

Positions PositionsOf(const std::vector<Entry>& entries) {
  Positions positions;
  for (const Entry& entry : entries) positions.push_back(entry.position);
  return positions;
}

std::string Typed(const char* typeWord, const std::string& text) {
  return std::string(typeWord, 2) + text;
}

}  // namespace

TEST_F(Views, GiveEntriesWithAllTheirParts) {
  const auto entries = ReadOnly(R"({"columns": [{"item": "Plant"}, {"item": "Height"}],
    "entries": [{"note": "000008FA", "indent": 1, "counts": [4, 5, 6], "flag": 7,
                 "values": [{"text": "Ä"}, {"number": 1}]}]})");
  const std::string one("\x00\x03\0\0\0\0\0\0\xF0\x3F", 10);
  EXPECT_EQ(entries,
            (std::vector<Entry>{{0x8FA,
                                 {4, 5, 6},
                                 7,
                                 1,
                                 {1, 1},
                                 {{"Plant", Typed("\x00\x05", "\x01\xC4")}, {"Height", one}}}}));
}

TEST_F(Views, TellKindsOfEntriesByTheTopBitsOfTheNoteId) {
  const auto entries = ReadOnly(R"({"entries": [{"note": "3FFFFFFF"}, {"category": true},
                                                {"total": true}, {"partial": true}]})");
  ASSERT_EQ(entries.size(), 4U);
  EXPECT_EQ(entries[0].id, 0x3FFFFFFFU);
  EXPECT_EQ(entries[1].id >> 30, 2U);
  EXPECT_EQ(entries[2].id >> 30, 3U);
  EXPECT_EQ(entries[3].id >> 30, 1U);
  EXPECT_EQ(entries[0].items, SummaryItems{});
}

TEST_F(Views, MarkConflictsBehindTheValues) {
  const auto entries = ReadOnly(R"({"columns": [{"item": "A"}], "entries": [
    {"note": "902", "conflict": true, "values": [{"text": "a"}]}]})");
  EXPECT_EQ(entries[0].items,
            (SummaryItems{{"A", Typed("\x00\x05", "a")}, {"$Conflict", Typed("\x00\x05", "")}}));
}

TEST_F(Views, NameValuesAfterColumnsThatAreNoConstants) {
  const auto entries = ReadOnly(R"({"columns": [{"title": "First"}, {"constant": {"number": 1}},
    {"item": "C"}], "entries": [{"note": "902", "values": [{"text": ""}, {"text": ""},
                                                           {"text": ""}]}]})");
  ASSERT_EQ(entries[0].items.size(), 3U);
  EXPECT_EQ(entries[0].items[0].first, "$1");
  EXPECT_EQ(entries[0].items[1].first, "C");
  EXPECT_EQ(entries[0].items[2].first, "$More2");
}

TEST_F(Views, GivePositionsByIndent) {
  EXPECT_EQ(PositionsOf(ReadOnly(R"({"entries": [
              {"category": true}, {"note": "902", "indent": 1}, {"note": "906", "indent": 1},
              {"note": "90A", "indent": 3}, {"category": true}, {"note": "90E", "indent": 2}]})")),
            (Positions{{1}, {1, 1}, {1, 2}, {1, 2, 1, 1}, {2}, {2, 1, 1}}));
}

TEST_F(Views, GivePositionsOfTheFile) {
  EXPECT_EQ(PositionsOf(ReadOnly(R"({"entries": [{"note": "902", "position": [3, 7]},
                                                 {"note": "906", "indent": 1},
                                                 {"note": "90A"}]})")),
            (Positions{{3, 7}, {3, 8}, {4}}));
}

TEST_F(Views, AreReadInPiecesThatFollowEachOther) {
  const HCOLLECTION collection =
      OpenCollection(OpenView(R"({"entries": [{"category": true}, {"note": "902", "indent": 1}],
                   "generateEntries": 2})"),
                     kReadView);
  CollectionPosition position = {};
  std::vector<Entry> entries;
  for (const DWORD returned : {2U, 2U, 0U}) {
    const ReadBuffer read = ReadEntries(collection, &position, 2);
    EXPECT_EQ(read.status, 0);
    EXPECT_EQ(read.returned, returned);
    EXPECT_EQ(read.skipped, returned == 0 ? 0U : 1U);
    EXPECT_EQ(read.hasBuffer, returned != 0);
    EXPECT_EQ(read.signalFlags, entries.empty() ? kSignalMoreToDo : 0);
    for (const Entry& entry : EntriesIn(read)) entries.push_back(entry);
  }
  EXPECT_EQ(PositionsOf(entries), (Positions{{1}, {1, 1}, {2}, {3}}));
  EXPECT_EQ(position.level, 0);
  EXPECT_EQ(position.tumbler[0], 3U);
}

TEST_F(Views, ComeInBuffersOfAtMost64Kilobytes) {
  const std::string large = R"({"values": [{"text": ")" + std::string(30000, 'x') + R"("}], )";
  const HCOLLECTION collection =
      OpenCollection(OpenView(R"({"entries": [)" + large + R"("note": "902"}, )" + large +
                              R"("note": "906"}, )" + large + R"("note": "90A"}]})"),
                     kReadView);
  CollectionPosition position = {};
  const ReadBuffer first = ReadEntries(collection, &position);
  EXPECT_EQ(first.returned, 2U);
  EXPECT_EQ(first.signalFlags, kSignalMoreToDo);
  const ReadBuffer second = ReadEntries(collection, &position);
  EXPECT_EQ(EntriesIn(second)[0].id, 0x90AU);
  EXPECT_EQ(second.signalFlags, 0);
}

// An entry of 28 bytes before its summary, which has 8 + 2 + 2 bytes beside the text.
TEST_F(Views, FillABufferToItsLastByte) {
  const auto statusWith = [&](std::size_t textLength) {
    const HCOLLECTION collection = OpenCollection(
        OpenView(
            R"({"columns": [{"item": "AB"}], "entries": [{"note": "902", "values": [{"text": ")" +
            std::string(textLength, 'x') + R"("}]}, {"note": "906"}]})"),
        kReadView);
    CollectionPosition position = {};
    const ReadBuffer read = ReadEntries(collection, &position);
    EXPECT_EQ(read.bytes.size(), read.status == 0 ? 65535U : 0U);
    return read.status;
  };
  EXPECT_EQ(statusWith(65535 - 40), 0);
  EXPECT_EQ(statusWith(65535 - 39), kEntryTooLarge);
  EXPECT_EQ(statusWith(70000), kEntryTooLarge);
}

TEST_F(Views, StopBeforeAnEntryThatNoBufferHolds) {
  const HCOLLECTION collection = OpenCollection(
      OpenView(R"({"entries": [{"note": "902"}, {"note": "906", "values": [{"text": ")" +
               std::string(66000, 'x') + R"("}]}]})"),
      kReadView);
  CollectionPosition position = {};
  const ReadBuffer first = ReadEntries(collection, &position);
  EXPECT_EQ(first.returned, 1U);
  EXPECT_EQ(first.signalFlags, kSignalMoreToDo);
  EXPECT_EQ(ReadEntries(collection, &position).status, kEntryTooLarge);
}

TEST_F(Views, MayBeEmpty) {
  const HCOLLECTION collection = OpenCollection(OpenView("{}"), kReadView);
  CollectionPosition position = {};
  const ReadBuffer read = ReadEntries(collection, &position);
  EXPECT_EQ(read.status, 0);
  EXPECT_FALSE(read.hasBuffer);
  EXPECT_EQ(read.returned, 0U);
  EXPECT_EQ(read.signalFlags, 0);
  EXPECT_EQ(position.tumbler[0], 0U);
}

TEST_F(Views, AreNotReadFromAPositionWithoutAnEntry) {
  const HCOLLECTION collection = OpenCollection(
      OpenView(R"({"entries": [{"note": "902"}], "generateEntries": 1})"), kReadView);
  for (const DWORD tumbler : {3U, 77U}) {
    CollectionPosition position = {};
    position.tumbler[0] = tumbler;
    EXPECT_EQ(ReadEntries(collection, &position).status, kNoSuchPosition);
  }
  CollectionPosition deeper = {};
  deeper.level = 1;
  deeper.tumbler[0] = deeper.tumbler[1] = 1;
  EXPECT_EQ(ReadEntries(collection, &deeper).status, kNoSuchPosition);
}

TEST_F(Views, GiveDamagedEntriesAsTheyStand) {
  const HCOLLECTION collection =
      OpenCollection(OpenView(R"({"entries": [{"rawEntry": "01 02 03"}, {"rawEntry": ""},
                               {"note": "902", "summaryBytes": "FF FF"}]})"),
                     kReadView);
  CollectionPosition position = {};
  const ReadBuffer read = ReadEntries(collection, &position);
  EXPECT_EQ(read.returned, 3U);
  EXPECT_EQ(read.bytes.substr(0, 5), "\x01\x02\x03\x02\x09");
  EXPECT_EQ(read.bytes.size(), 3U + 28U + 2U);
  EXPECT_EQ(read.bytes.substr(31), "\xFF\xFF");
}

TEST_F(Views, CanHaveManyGeneratedEntries) {
  const auto entries = ReadOnly(R"({"columns": [{"item": "A"}, {"constant": {"text": "x"}},
    {"item": "B"}, {"item": "C"}, {"item": "D"}], "generateEntries": 20000})");
  ASSERT_EQ(entries.size(), 20000U);
  const Entry& last = entries.back();
  EXPECT_EQ(last.id, 0x1000U + 4 * 19999);
  EXPECT_EQ(last.position, std::vector<DWORD>{20000});
  ASSERT_EQ(last.items.size(), 4U);
  EXPECT_EQ(last.items[0],
            (std::pair<std::string, std::string>("A", Typed("\x00\x05", "Seed lot 19999"))));
  EXPECT_EQ(last.items[1].second.substr(0, 2), std::string("\x00\x03", 2));
  EXPECT_EQ(last.items[2].second.substr(0, 6), std::string("\x00\x04\xFF\xFF\xFF\xFF", 6));
  EXPECT_EQ(last.items[3].first, "D");
}

TEST_F(Views, LeaveNothingOpenOnceReadAndFreed) {
  const DHANDLE database = OpenView(R"({"generateEntries": 5000})");
  const std::uint32_t before = StandinOpenCount();
  EXPECT_EQ(ReadView(database, kReadView).size(), 5000U);
  EXPECT_EQ(StandinOpenCount(), before);
}

TEST_F(Views, KeepBuffersThatNobodyFrees) {
  const HCOLLECTION collection = OpenCollection(OpenView(R"({"generateEntries": 1})"), kReadView);
  const std::uint32_t before = StandinOpenCount();
  CollectionPosition position = {};
  DHANDLE buffer = 0;
  WORD length = 0, signalFlags = 0;
  DWORD skipped = 0, returned = 0;
  EXPECT_EQ(NIFReadEntries(collection, &position, 1, 1, 1, 9, 0xC0F9, &buffer, &length, &skipped,
                           &returned, &signalFlags),
            0);
  EXPECT_EQ(StandinOpenCount(), before + 1);
}

TEST_F(Views, RecordHowTheyWereRead) {
  const HCOLLECTION collection = OpenCollection(OpenView("{}"), kReadView);
  CollectionPosition position = {};
  ReadEntries(collection, &position, 12);
  EXPECT_EQ(RecordedArguments("NIFReadEntries"), nlohmann::json({{"view", kReadView},
                                                                 {"skipNavigator", 1},
                                                                 {"skipCount", 1},
                                                                 {"returnNavigator", 1},
                                                                 {"returnCount", 12},
                                                                 {"mask", 0xC0F9}}));
}

TEST_F(Views, FailAsAFaultPlanSaysOfTheirNote) {
  const DHANDLE database = OpenDatabase(R"({"notes": [
    {"id": "90A", "class": "view", "view": {"generateEntries": 3}},
    {"id": "90E", "class": "view"}]})");
  StandinSetFaults(R"([{"entry": "NIFReadEntries", "note": "90A", "call": 2, "status": 77},
                       {"entry": "NIFCloseCollection", "note": "90A", "status": 78},
                       {"entry": "NIFOpenCollection", "note": "90E", "call": 2, "status": 79}])");
  const HCOLLECTION struck = OpenCollection(database, 0x90A);
  const HCOLLECTION other = OpenCollection(database, 0x90E);
  CollectionPosition position = {}, start = {};
  EXPECT_EQ(ReadEntries(struck, &position, 1).status, 0);
  EXPECT_EQ(ReadEntries(other, &start).status, 0);
  EXPECT_EQ(ReadEntries(other, &start).status, 0);
  EXPECT_EQ(ReadEntries(struck, &position, 1).status, 77);
  EXPECT_EQ(position.tumbler[0], 1U);
  EXPECT_EQ(ReadEntries(struck, &position, 1).returned, 1U);
  EXPECT_EQ(NIFCloseCollection(struck), 78);
  EXPECT_EQ(NIFCloseCollection(other), 0);
  HCOLLECTION again = 0;
  EXPECT_EQ(NIFOpenCollection(database, database, 0x90E, 0, 0, &again, nullptr, nullptr, nullptr,
                              nullptr),
            79);
}

}  // namespace larkspan::standin_test
