// The views of the sample databases do what they are there for.
#include <algorithm>

#include "tests/standin/ViewReading.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr NOTEID kByBedAndFamily = 0x152;
constexpr NOTEID kForLabels = 0x16A;
constexpr NOTEID kOpenOrders = 0x16E;
constexpr NOTEID kKindsOfValues = 0x176;

class SampleViews : public StandinTest {
 protected:
  SampleViews() { StartWithSamples(); }

  static DHANDLE Open(const char* path) {
    DHANDLE database = 0;
    EXPECT_EQ(NSFDbOpen(path, &database), 0) << path;
    return database;
  }

  static std::string FlagsOf(DHANDLE database, NOTEID view) {
    DHANDLE note = 0;
    EXPECT_EQ(NSFNoteOpen(database, view, 0, &note), 0);
    char flags[100];
    NSFItemGetText(note, "$Flags", flags, sizeof flags);
    EXPECT_EQ(NSFNoteClose(note), 0);
    return flags;
  }

  static bool HasIndex(DHANDLE database, NOTEID view) {
    HCOLLECTION collection = 0;
    if (NIFOpenCollection(database, database, view, 6, 0, &collection, nullptr, nullptr, nullptr,
                          nullptr) != 0) {
      return false;
    }
    EXPECT_EQ(NIFCloseCollection(collection), 0);
    return true;
  }

  static std::vector<NOTEID> KindsOf(const std::vector<Entry>& entries) {
    std::vector<NOTEID> kinds;
    for (const Entry& entry : entries) kinds.push_back(entry.id >> 30);
    return kinds;
  }

  // What the first reading gives.
  static ReadBuffer FirstBuffer(DHANDLE database, NOTEID view) {
    const HCOLLECTION collection = OpenCollection(database, view);
    CollectionPosition position = {};
    const ReadBuffer read = ReadEntries(collection, &position);
    EXPECT_EQ(NIFCloseCollection(collection), 0);
    return read;
  }
};

}  // namespace

TEST_F(SampleViews, OfThePlantRegisterAreOfEverySort) {
  struct Case {
    NOTEID view;
    std::size_t entries;
    const char* flags;
    bool hasIndex;
  };
  const DHANDLE database = Open("sample.nsf");
  for (const Case& known : std::vector<Case>{{0x12E, 0, "", false},
                                             {0x14E, 22, "", true},
                                             {kByBedAndFamily, 58, "", true},
                                             {0x156, 3, "F", true},
                                             {0x15A, 2, "P", true},
                                             {0x15E, 2, "G", true},
                                             {0x162, 1, "F4", true},
                                             {0x166, 0, "", true},
                                             {kForLabels, 4, "", true},
                                             {kOpenOrders, 4, "", true},
                                             {0x172, 3, "", false},
                                             {kKindsOfValues, 19, "", true}}) {
    EXPECT_EQ(HasIndex(database, known.view), known.hasIndex) << known.view;
    EXPECT_EQ(FlagsOf(database, known.view), known.flags) << known.view;
    EXPECT_EQ(ReadView(database, known.view).size(), known.entries) << known.view;
  }
}

TEST_F(SampleViews, AreCategorisedTwoLevelsDeepWithTotals) {
  const auto entries = ReadView(Open("sample.nsf"), kByBedAndFamily);
  EXPECT_EQ(KindsOf({entries.begin(), entries.begin() + 3}), (std::vector<NOTEID>{2, 2, 0}));
  EXPECT_EQ(entries[2].position, (std::vector<DWORD>{1, 1, 1}));
  EXPECT_EQ(entries[2].indent, 2);
  const std::vector<NOTEID> kinds = KindsOf(entries);
  EXPECT_EQ(std::count(kinds.begin(), kinds.end(), 0U), 22);
  EXPECT_EQ(std::count(kinds.begin(), kinds.end(), 3U), 8);
  EXPECT_EQ(entries.back().indent, 0);
}

TEST_F(SampleViews, HaveAConflictAndAPartialEntry) {
  const DHANDLE database = Open("sample.nsf");
  const auto orders = ReadView(database, kOpenOrders);
  EXPECT_EQ(orders[1].items.back().first, "$Conflict");
  EXPECT_NE(orders[0].items.back().first, "$Conflict");
  EXPECT_EQ(ReadView(database, kKindsOfValues).back().id >> 30, 1U);
}

TEST_F(SampleViews, GiveConstantColumnsNoValue) {
  const auto entries = ReadView(Open("sample.nsf"), kForLabels);
  EXPECT_EQ(entries[1].items.size(), 2U);
  EXPECT_EQ(entries[1].items[1].first, "Bed");
}

TEST_F(SampleViews, CanBeLarge) {
  EXPECT_EQ(ReadView(Open("big-view.nsf"), 0x11A).size(), 100000U);
}

TEST_F(SampleViews, FailAsTheirTitlesSay) {
  const DHANDLE database = Open("damaged-views.nsf");
  const HCOLLECTION reading = OpenCollection(database, 0x21E);
  CollectionPosition position = {};
  EXPECT_EQ(ReadEntries(reading, &position).status, 0);
  EXPECT_EQ(ReadEntries(reading, &position).status, 554);
  HCOLLECTION collection = 0;
  EXPECT_EQ(NIFOpenCollection(database, database, 0x222, 0, 0, &collection, nullptr, nullptr,
                              nullptr, nullptr),
            554);
  DHANDLE note = 0;
  EXPECT_EQ(NSFNoteOpen(database, 0x226, 0, &note), 551);
  EXPECT_FALSE(HasIndex(database, 0x22A));
  EXPECT_EQ(NIFPurgeCollection(database, database, 0x22A), 564);
  EXPECT_EQ(ReadView(database, 0x202).size(), 2U);
  EXPECT_EQ(ReadView(database, 0x24E).size(), 2U);
}

// The first entry of each is well, and takes 28 + 24 bytes.
TEST_F(SampleViews, HoldDamagedSummaries) {
  const DHANDLE database = Open("damaged-views.nsf");
  const std::size_t summary = 28 + 24 + 28;
  const auto wordAt = [](const ReadBuffer& read, std::size_t offset) {
    return static_cast<BYTE>(read.bytes.at(offset)) | static_cast<BYTE>(read.bytes.at(offset + 1))
                                                          << 8;
  };
  EXPECT_EQ(wordAt(FirstBuffer(database, 0x22E), summary), 60000);
  EXPECT_EQ(wordAt(FirstBuffer(database, 0x232), summary + 6), 900);
  EXPECT_EQ(wordAt(FirstBuffer(database, 0x236), summary), 0);
  EXPECT_EQ(wordAt(FirstBuffer(database, 0x23A), summary + 2), 9000);
  EXPECT_EQ(wordAt(FirstBuffer(database, 0x23E), summary - 8), 65535);
  EXPECT_EQ(FirstBuffer(database, 0x242).bytes.size(), 28U + 24 + 10);
}

TEST_F(SampleViews, HoldDamagedFormats) {
  const DHANDLE database = Open("damaged-views.nsf");
  const auto lengthOfFormat = [&](NOTEID view) -> long {
    DHANDLE note = 0;
    EXPECT_EQ(NSFNoteOpen(database, view, 0, &note), 0);
    DWORD length = 0;
    const STATUS status = NSFItemInfo(note, "$ViewFormat", 11, nullptr, nullptr, nullptr, &length);
    EXPECT_EQ(NSFNoteClose(note), 0);
    return status == 0 ? static_cast<long>(length) : -1;
  };
  EXPECT_EQ(lengthOfFormat(0x202), 2 + 8 + 16 + 14);
  EXPECT_EQ(lengthOfFormat(0x206), 2 + 8 + 16 + 6);
  EXPECT_EQ(lengthOfFormat(0x20A), -1);
  EXPECT_EQ(lengthOfFormat(0x216), 2 + 4);
  EXPECT_EQ(lengthOfFormat(0x21A), 2);
}

}  // namespace larkspan::standin_test
