// Text lists and summaries in memory.
#include <cstring>

#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

using Bytes = std::vector<BYTE>;

constexpr STATUS kNoSuchEntry = 570;

// Three entries, of which one is empty, without and with the type word.
const Bytes kList = {3, 0, 2, 0, 0, 0, 1, 0, 'a', 'b', 'c'};
const Bytes kTypedList = {0x01, 0x05, 3, 0, 2, 0, 0, 0, 1, 0, 'a', 'b', 'c'};

// The items Form = "x", $Conflict = a type word alone, and No = no value.
const Bytes kSummary = {36,  0,   3,   0,                                              // head
                        4,   0,   3,   0,   9,    0,    2,   0,   2,   0,    0,    0,  // lengths
                        'F', 'o', 'r', 'm', 0x00, 0x05, 'x',                           // Form
                        '$', 'C', 'o', 'n', 'f',  'l',  'i', 'c', 't', 0x01, 0x05,     // $Conflict
                        'N', 'o',                                                      // No
                        'p', 'a', 'd', 'd', 'e',  'd'};

struct Located {
  bool isFound = false;
  std::string value;
  WORD type = 0;
  bool operator==(const Located&) const = default;
};

class Lists : public StandinTest {
 protected:
  Lists() { Start(); }

  static std::string Text(const Bytes& list, BOOL hasType, WORD index) {
    char* text = nullptr;
    WORD length = 0;
    EXPECT_EQ(ListGetText(list.data(), hasType, index, &text, &length), 0);
    return {text, length};
  }

  static Located Locate(Bytes summary, const char* name) {
    void* value = nullptr;
    WORD length = 0, type = 0;
    auto* const table = reinterpret_cast<ItemTable*>(summary.data());
    if (NSFLocateSummaryValue(table, name, &value, &length, &type) == 0) return {};
    return {true, {static_cast<char*>(value), length}, type};
  }

  static DHANDLE MemoryWith(const Bytes& bytes, void** locked) {
    DHANDLE memory = 0;
    EXPECT_EQ(OSMemAlloc(0, static_cast<DWORD>(bytes.size()), &memory), 0);
    *locked = OSLockObject(memory);
    std::memcpy(*locked, bytes.data(), bytes.size());
    return memory;
  }
};

using Summaries = Lists;
using ListsDeathTest = Lists;

}  // namespace

TEST_F(Lists, TellTheirEntries) {
  EXPECT_EQ(ListGetNumEntries(kList.data(), 0), 3);
  EXPECT_EQ(ListGetNumEntries(kTypedList.data(), 1), 3);
  for (const auto& [list, hasType] : {std::pair(kList, 0), std::pair(kTypedList, 1)}) {
    EXPECT_EQ(Text(list, hasType, 0), "ab");
    EXPECT_EQ(Text(list, hasType, 1), "");
    EXPECT_EQ(Text(list, hasType, 2), "c");
  }
}

TEST_F(Lists, HaveNoEntryPastTheLast) {
  char* text = nullptr;
  WORD length = 0;
  EXPECT_EQ(ListGetText(kList.data(), 0, 3, &text, &length), kNoSuchEntry);
  const Bytes empty = {0x01, 0x05, 0, 0};
  EXPECT_EQ(ListGetNumEntries(empty.data(), 1), 0);
  EXPECT_EQ(ListGetText(empty.data(), 1, 0, &text, &length), kNoSuchEntry);
}

TEST_F(Lists, GivePlacesInsideTheListItself) {
  char* text = nullptr;
  WORD length = 0;
  EXPECT_EQ(ListGetText(kTypedList.data(), 1, 2, &text, &length), 0);
  EXPECT_EQ(static_cast<const void*>(text), kTypedList.data() + 12);
}

TEST_F(Lists, FailAsAFaultPlanSays) {
  StandinSetFaults(R"([{"entry": "ListGetNumEntries", "status": 1},
                       {"entry": "ListGetText", "status": 2},
                       {"entry": "NSFLocateSummaryValue", "item": "Form", "status": 3}])");
  EXPECT_EQ(ListGetNumEntries(kList.data(), 0), 0);
  EXPECT_EQ(ListGetText(kList.data(), 0, 0, nullptr, nullptr), 2);
  EXPECT_FALSE(Locate(kSummary, "Form").isFound);
  EXPECT_TRUE(Locate(kSummary, "$Conflict").isFound);
}

TEST_F(Summaries, GiveValuesBehindTheirTypeWords) {
  EXPECT_EQ(Locate(kSummary, "Form"), (Located{true, "x", 0x0500}));
  EXPECT_EQ(Locate(kSummary, "$Conflict"), (Located{true, "", 0x0501}));
  EXPECT_EQ(Locate(kSummary, "No"), (Located{true, "", 0}));
  EXPECT_FALSE(Locate(kSummary, "For").isFound);
  EXPECT_FALSE(Locate(kSummary, "").isFound);
}

TEST_F(Summaries, KnowNamesInAnyLetterCase) {
  EXPECT_EQ(Locate(kSummary, "fORM"), (Located{true, "x", 0x0500}));
  EXPECT_TRUE(Locate(kSummary, "$conflict").isFound);
}

TEST_F(Summaries, AreReadNoFurtherThanTheyAreLong) {
  Bytes damaged = kSummary;
  damaged[0] = 34;
  EXPECT_TRUE(Locate(damaged, "$Conflict").isFound);
  damaged[0] = 33;
  EXPECT_TRUE(Locate(damaged, "Form").isFound);
  EXPECT_FALSE(Locate(damaged, "$Conflict").isFound);
  damaged[0] = 15;
  EXPECT_FALSE(Locate(damaged, "Form").isFound);
  damaged[0] = 0;
  EXPECT_FALSE(Locate(damaged, "Form").isFound);
  damaged = kSummary;
  damaged[3] = 0x80;
  EXPECT_FALSE(Locate(damaged, "No").isFound);
}

TEST_F(ListsDeathTest, OfAnotherTypeAreRefused) {
  EXPECT_STRICT(ListGetNumEntries(kList.data(), 1), "ListGetNumEntries: the value is no text list");
  EXPECT_STRICT(ListGetNumEntries(nullptr, 0), "nothing to read");
}

TEST_F(ListsDeathTest, MayNotReachPastTheMemoryTheyLieIn) {
  void* list = nullptr;
  char* text = nullptr;
  WORD length = 0;
  MemoryWith({2, 0, 1, 0, 9, 0, 'a', 'b'}, &list);
  EXPECT_EQ(ListGetText(list, 0, 0, &text, &length), 0);
  EXPECT_STRICT(ListGetText(list, 0, 1, &text, &length), "the memory ends before what is read");
  MemoryWith({9, 0, 1, 0, 9, 0, 'a', 'b'}, &list);
  EXPECT_STRICT(ListGetText(list, 0, 0, &text, &length), "the memory ends before what is read");
  MemoryWith({1}, &list);
  EXPECT_STRICT(ListGetNumEntries(list, 0), "the memory ends before what is read");
}

TEST_F(ListsDeathTest, AndSummariesMayNotEither) {
  void* summary = nullptr;
  void* value = nullptr;
  WORD length = 0, type = 0;
  MemoryWith({9, 0, 0, 0, 1, 2, 3, 4}, &summary);
  EXPECT_STRICT(
      NSFLocateSummaryValue(static_cast<ItemTable*>(summary), "a", &value, &length, &type),
      "the memory ends before what is read");
}

}  // namespace larkspan::standin_test
