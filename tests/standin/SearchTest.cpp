// Searching a database.
#include <algorithm>

#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr char kMixed[] = R"({
  "replicaId": "0123456789ABCDEF",
  "notes": [
    {"id": "902", "modified": "2020-01-01T00:00:00Z", "sequence": 3,
     "unid": "11111111222222223333333344444444"},
    {"id": "906", "modified": "2021-01-01T00:00:00Z", "items": [
      {"name": "$Name", "text": "$profile_1"}]},
    {"id": "90A", "class": "form", "modified": "2021-06-01T12:00:00Z"},
    {"id": "90E", "class": "view", "modified": "2022-01-01T00:00:00Z"},
    {"id": "912"}, {"id": "916"}, {"id": "91A"}],
  "deleted": [{"id": "A02"}, {"id": "A06", "class": "form"}]})";

struct Hits {
  std::vector<SearchMatch> matches;
  STATUS answer = 0;

  std::vector<NOTEID> Ids() const {
    std::vector<NOTEID> ids;
    for (const SearchMatch& match : matches) ids.push_back(match.noteId);
    return ids;
  }

  std::vector<NOTEID> SortedIds() const {
    std::vector<NOTEID> ids = Ids();
    std::sort(ids.begin(), ids.end());
    return ids;
  }
};

STATUS LARKSPAN_NOTES_CALL RememberMatch(void* context, SearchMatch* match, ItemTable* summary) {
  auto* const hits = static_cast<Hits*>(context);
  EXPECT_EQ(summary->length, match->summaryLength);
  hits->matches.push_back(*match);
  return hits->answer;
}

class Searches : public StandinTest {
 protected:
  Searches() : database_(OpenDatabase(kMixed)) {}

  Hits Search(WORD classMask, TIMEDATE* since = nullptr) const {
    Hits hits;
    EXPECT_EQ(Run(classMask, since, &hits), 0);
    return hits;
  }

  STATUS Run(WORD classMask, TIMEDATE* since, Hits* hits) const {
    return NSFSearchExtended3(database_, 0, 0, 0, nullptr, 0x10, 0, 0, 0, 0, classMask, since,
                              RememberMatch, hits, nullptr, 0);
  }

 private:
  DHANDLE database_;
};

using Ids = std::vector<NOTEID>;

}  // namespace

TEST_F(Searches, FindEveryNoteAndStubOnce) {
  EXPECT_EQ(Search(0x7FFF).SortedIds(),
            (Ids{0x902, 0x906, 0x90A, 0x90E, 0x912, 0x916, 0x91A, 0xA02, 0xA06}));
}

TEST_F(Searches, HonourTheClassMaskForStubsToo) {
  EXPECT_EQ(Search(0x7FFE).SortedIds(), (Ids{0x90A, 0x90E, 0xA06}));
  EXPECT_EQ(Search(0x0001).SortedIds(), (Ids{0x902, 0x906, 0x912, 0x916, 0x91A, 0xA02}));
  EXPECT_EQ(Search(0x0008).SortedIds(), (Ids{0x90E}));
}

TEST_F(Searches, MarkStubs) {
  for (const SearchMatch& match : Search(0x7FFF).matches) {
    EXPECT_EQ((match.noteClass & 0x8000) != 0, match.noteId >= 0xA02) << match.noteId;
  }
}

TEST_F(Searches, GiveNoHelpfulOrderButAlwaysTheSame) {
  const Ids ids = Search(0x7FFF).Ids();
  EXPECT_FALSE(std::is_sorted(ids.begin(), ids.end()));
  EXPECT_FALSE(std::is_sorted(ids.rbegin(), ids.rend()));
  EXPECT_EQ(Search(0x7FFF).Ids(), ids);
}

TEST_F(Searches, FindWhatWasModifiedSince) {
  TIME time = {};
  time.year = 2021;
  time.month = 6;
  time.day = 1;
  time.hour = 12;
  ASSERT_EQ(TimeLocalToGM(&time), 0);
  EXPECT_EQ(Search(0x7FFF, &time.gm).SortedIds(), (Ids{0x90A, 0x90E}));
}

TEST_F(Searches, DescribeTheNote) {
  const Hits hits = Search(0x7FFF);
  const auto match = std::find_if(hits.matches.begin(), hits.matches.end(),
                                  [](const SearchMatch& hit) { return hit.noteId == 0x902; });
  ASSERT_NE(match, hits.matches.end());
  EXPECT_EQ(match->noteClass, 1);
  EXPECT_EQ(match->originatorId.file[1], 0x11111111U);
  EXPECT_EQ(match->originatorId.file[0], 0x22222222U);
  EXPECT_EQ(match->originatorId.note[1], 0x33333333U);
  EXPECT_EQ(match->originatorId.note[0], 0x44444444U);
  EXPECT_EQ(match->originatorId.sequence, 3U);
}

TEST_F(Searches, EndWithTheStatusOfTheCallback) {
  Hits hits;
  hits.answer = 77;
  EXPECT_EQ(Run(0x7FFF, nullptr, &hits), 77);
  EXPECT_EQ(hits.matches.size(), 1U);
}

TEST_F(Searches, FailAfterSomeMatches) {
  StandinSetFaults(R"([{"entry": "NSFSearchExtended3", "call": 1, "matches": 3, "status": 77},
                       {"entry": "NSFSearchExtended3", "call": 2, "matches": 99, "status": 78},
                       {"entry": "NSFSearchExtended3", "call": 3, "matches": 0, "status": 79}])");
  Hits three, all, none;
  EXPECT_EQ(Run(0x7FFF, nullptr, &three), 77);
  EXPECT_EQ(three.matches.size(), 3U);
  EXPECT_EQ(Run(0x7FFF, nullptr, &all), 78);
  EXPECT_EQ(all.matches.size(), 9U);
  EXPECT_EQ(Run(0x7FFF, nullptr, &none), 79);
  EXPECT_TRUE(none.matches.empty());
}

}  // namespace larkspan::standin_test
