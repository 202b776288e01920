// Ways of reading a view, or of asking a database, that end the process.
#include "tests/standin/ViewReading.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

// The arguments of a reading that is well, for a test to spoil one.
struct Arguments {
  CollectionPosition position = {};
  WORD skipNavigator = 1;
  DWORD skipCount = 1;
  WORD returnNavigator = 1;
  DWORD mask = 0xC0F9;
  DHANDLE buffer = 0;
  DHANDLE* bufferPlace = &buffer;
};

class ReadStrictnessDeathTest : public StandinTest {
 protected:
  ReadStrictnessDeathTest()
      : database_(OpenDatabase(R"({"notes": [{"id": "90A", "class": "view",
                                              "view": {"generateEntries": 2}}]})")),
        collection_(OpenCollection(database_, 0x90A)) {}

  STATUS Read(Arguments* arguments) const {
    WORD length = 0, signalFlags = 0;
    DWORD skipped = 0, returned = 0;
    return NIFReadEntries(collection_, &arguments->position, arguments->skipNavigator,
                          arguments->skipCount, arguments->returnNavigator, 0xFFFFFFFF,
                          arguments->mask, arguments->bufferPlace, &length, &skipped, &returned,
                          &signalFlags);
  }

  DHANDLE database_;
  HCOLLECTION collection_;
};

}  // namespace

TEST_F(ReadStrictnessDeathTest, OneWayOfReadingIsKnown) {
  Arguments well;
  EXPECT_EQ(Read(&well), 0);
  Arguments skip, count, navigator, mask, place;
  skip.skipNavigator = 0;
  EXPECT_STRICT(Read(&skip), "NIFReadEntries: unknown navigator");
  navigator.returnNavigator = 2;
  EXPECT_STRICT(Read(&navigator), "unknown navigator");
  count.skipCount = 0;
  EXPECT_STRICT(Read(&count), "only one entry can be skipped");
  mask.mask = 0xC0F8;
  EXPECT_STRICT(Read(&mask), "unknown read mask");
  place.bufferPlace = nullptr;
  EXPECT_STRICT(Read(&place), "no place");
}

TEST_F(ReadStrictnessDeathTest, PositionsAreFreeOfGarbage) {
  Arguments deep, least, most;
  deep.position.level = 32;
  EXPECT_STRICT(Read(&deep), "too many levels");
  least.position.minLevel = 1;
  EXPECT_STRICT(Read(&least), "the position has limits");
  most.position.maxLevel = 1;
  EXPECT_STRICT(Read(&most), "the position has limits");
}

TEST_F(ReadStrictnessDeathTest, CollectionsAreOpenAndOpenedInAKnownWay) {
  HCOLLECTION other = 0;
  EXPECT_STRICT(NIFOpenCollection(database_, database_, 0x90A, 2, 0, &other, nullptr, nullptr,
                                  nullptr, nullptr),
                "unknown flags");
  NIFCloseCollection(collection_);
  Arguments well;
  EXPECT_STRICT(Read(&well), "a collection handle that was closed already");
}

TEST_F(ReadStrictnessDeathTest, DatabasesAreAskedWithAPlaceForTheAnswer) {
  char info[129] = {};
  char out[8];
  EXPECT_STRICT(NSFDbReplicaInfoGet(database_, nullptr), "no place");
  EXPECT_STRICT(NSFDbIDGet(database_, nullptr), "no place");
  EXPECT_STRICT(NSFDbInfoGet(database_, nullptr), "no place");
  EXPECT_STRICT(NSFDbSpaceUsageScaled(database_, nullptr, nullptr, nullptr), "no place");
  EXPECT_STRICT(NSFDbInfoParse(info, 2, out, 7), "unknown field");
  std::fill_n(info, sizeof info, 'x');
  EXPECT_STRICT(NSFDbInfoParse(info, kInfoTitle, out, 7), "the information does not end");
  EXPECT_STRICT(NSFDbInfoParse(info, kInfoCategories, out, 7), "no such field");
}

TEST_F(ReadStrictnessDeathTest, TimesAreKnownConstants) {
  TIMEDATE time = {};
  EXPECT_STRICT(TimeConstant(1, &time), "unknown constant");
  EXPECT_STRICT(TimeGMToLocalZone(nullptr), "missing");
}

}  // namespace larkspan::standin_test
