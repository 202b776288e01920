// The indexes of views.
#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr NOTEID kView = 0x90A;
constexpr NOTEID kForm = 0x90E;
constexpr NOTEID kNothing = 0x912;
constexpr NOTEID kIndexedView = 0x916;
constexpr WORD kWithoutBuilding = 6;

class Collections : public StandinTest {
 protected:
  Collections()
      : database_(OpenDatabase(R"({"notes": [
            {"id": "90A", "class": "view"}, {"id": "90E", "class": "form"},
            {"id": "916", "class": "view", "view": {"indexed": true}}]})")) {}

  STATUS Open(NOTEID view, HCOLLECTION* collection, WORD flags = 0) const {
    return NIFOpenCollection(database_, database_, view, flags, 0, collection, nullptr, nullptr,
                             nullptr, nullptr);
  }

  HCOLLECTION Open() const {
    HCOLLECTION collection = 0;
    EXPECT_EQ(Open(kView, &collection), 0);
    return collection;
  }

  // Purging tells the ledger whether there was an index to drop.
  bool PurgedAnIndex() const {
    EXPECT_EQ(NIFPurgeCollection(database_, database_, kView), 0);
    return RecordedArguments("NIFPurgeCollection")["hadIndex"];
  }

  DHANDLE database_;
};

}  // namespace

TEST_F(Collections, OpenOnViewsOnly) {
  HCOLLECTION collection = 0;
  EXPECT_EQ(Open(kForm, &collection), 556);
  EXPECT_EQ(Open(kNothing, &collection), 551);
  EXPECT_EQ(NIFPurgeCollection(database_, database_, kForm), 556);
  EXPECT_EQ(NIFPurgeCollection(database_, database_, kNothing), 551);
  EXPECT_EQ(Open(kView, &collection), 0);
  EXPECT_NE(collection, 0);
}

TEST_F(Collections, BuildTheIndexThatPurgingDrops) {
  EXPECT_FALSE(PurgedAnIndex());
  EXPECT_EQ(NIFCloseCollection(Open()), 0);
  EXPECT_TRUE(PurgedAnIndex());
  EXPECT_FALSE(PurgedAnIndex());
}

TEST_F(Collections, DoNotOpenWithoutAnIndexWhenNoneIsToBeBuilt) {
  HCOLLECTION collection = 0;
  EXPECT_EQ(Open(kView, &collection, kWithoutBuilding), 566);
  EXPECT_FALSE(PurgedAnIndex());
  EXPECT_EQ(NIFCloseCollection(Open()), 0);
  EXPECT_EQ(Open(kView, &collection, kWithoutBuilding), 0);
}

TEST_F(Collections, HaveTheirIndexFromTheStartWhenTheFileSaysSo) {
  HCOLLECTION collection = 0;
  EXPECT_EQ(Open(kIndexedView, &collection, kWithoutBuilding), 0);
  EXPECT_EQ(NIFCloseCollection(collection), 0);
  EXPECT_EQ(NIFPurgeCollection(database_, database_, kIndexedView), 0);
  EXPECT_EQ(Open(kIndexedView, &collection, kWithoutBuilding), 566);
}

TEST_F(Collections, RecordEveryOpen) {
  HCOLLECTION collection = 0;
  Open(kView, &collection, kWithoutBuilding);
  Open(kView, &collection);
  EXPECT_EQ(RecordedArguments("NIFOpenCollection"),
            nlohmann::json({{{"view", kView}, {"flags", 6}, {"unreadList", 0}},
                            {{"view", kView}, {"flags", 0}, {"unreadList", 0}}}));
}

TEST_F(Collections, ProtectTheIndexWhileOpen) {
  const HCOLLECTION collection = Open();
  EXPECT_EQ(NIFPurgeCollection(database_, database_, kView), 564);
  EXPECT_EQ(NIFCloseCollection(collection), 0);
  EXPECT_TRUE(PurgedAnIndex());
}

TEST_F(Collections, CountAsOpenHandles) {
  const std::uint32_t before = StandinOpenCount();
  const HCOLLECTION collection = Open();
  EXPECT_EQ(StandinOpenCount(), before + 1);
  EXPECT_EQ(NIFCloseCollection(collection), 0);
  EXPECT_EQ(StandinOpenCount(), before);
}

}  // namespace larkspan::standin_test
