// Ways of looking names up that end the process.
#include "tests/standin/LookupArguments.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

// A lookup with two matches whose result is locked.
class LookupDeathTest : public StandinTest {
 protected:
  LookupDeathTest() {
    WriteFile("names.json", R"j({"($Servers)": [{"ServerName": "A"}, {"ServerName": "B"}]})j");
    Start();
    EXPECT_EQ(LookUp(&arguments_), 0);
    result_ = OSLockObject(arguments_.result);
    name_ = NAMELocateNextName(result_, nullptr, &count_);
    match_ = NAMELocateNextMatch(result_, name_, nullptr);
  }

  LookupArguments arguments_;
  WORD count_ = 0;
  void *result_ = nullptr, *name_ = nullptr, *match_ = nullptr;
  char out_[8] = {};
};

}  // namespace

TEST_F(LookupDeathTest, OneKindOfLookupIsKnown) {
  LookupArguments flags, nameSpaces, names, name, items, first, second, place;
  flags.flags = 0;
  EXPECT_STRICT(LookUp(&flags), "NAMELookup: unknown flags");
  nameSpaces.nameSpaceCount = 2;
  EXPECT_STRICT(LookUp(&nameSpaces), "only one name space");
  names.nameCount = 0;
  EXPECT_STRICT(LookUp(&names), "only one name can");
  name.name = "Imke";
  EXPECT_STRICT(LookUp(&name), "the name is not empty");
  items.itemCount = 1;
  EXPECT_STRICT(LookUp(&items), "only two items");
  first.items = std::string("\0A", 2);
  EXPECT_STRICT(LookUp(&first), "one name and an empty one");
  second.items = std::string("ServerName\0A", 12);
  EXPECT_STRICT(LookUp(&second), "one name and an empty one");
  place.resultPlace = nullptr;
  EXPECT_STRICT(LookUp(&place), "no place for the result");
}

TEST_F(LookupDeathTest, ResultsAreReadFromTheirStart) {
  EXPECT_STRICT(NAMELocateNextName(name_, nullptr, &count_), "not the start");
  EXPECT_STRICT(NAMELocateNextName(out_, nullptr, &count_), "no part of a locked lookup result");
  EXPECT_STRICT(NAMELocateNextName(nullptr, nullptr, &count_), "no part of a locked");
  EXPECT_STRICT(NAMELocateNextName(result_, match_, &count_), "no name of the lookup result");
  EXPECT_STRICT(NAMELocateNextName(result_, nullptr, nullptr), "no place for the number");
  EXPECT_STRICT(NAMELocateNextMatch(name_, name_, nullptr), "not the start");
  EXPECT_STRICT(NAMELocateNextMatch(result_, match_, nullptr), "no name of the lookup result");
  EXPECT_STRICT(NAMELocateNextMatch(result_, name_, name_), "no match of the lookup result");
}

TEST_F(LookupDeathTest, ItemsAreReadFromAMatch) {
  EXPECT_STRICT(NAMEGetTextItem(name_, 0, 0, out_, 7), "no match of the lookup result");
  EXPECT_STRICT(NAMEGetTextItem(out_, 0, 0, out_, 7), "no part of a locked lookup result");
  EXPECT_STRICT(NAMEGetTextItem(match_, 2, 0, out_, 7), "no such item");
  EXPECT_STRICT(NAMEGetTextItem(match_, 0, 1, out_, 7), "the member is not zero");
  EXPECT_STRICT(NAMEGetTextItem(match_, 0, 0, nullptr, 7), "no place for the text");
}

TEST_F(LookupDeathTest, ResultsAreReadWhileTheyAreLocked) {
  OSUnlockObject(arguments_.result);
  EXPECT_STRICT(NAMELocateNextName(result_, nullptr, &count_), "locked lookup result");
  EXPECT_STRICT(NAMEGetTextItem(match_, 0, 0, out_, 7), "locked lookup result");
}

TEST_F(LookupDeathTest, ResultsAreNotWrittenTo) {
  static_cast<BYTE *>(name_)[0] = 0xFF;
  EXPECT_STRICT(NAMEGetTextItem(match_, 0, 0, out_, 7), "was written to");
}

TEST_F(LookupDeathTest, MemoryOfTheCallerIsNoResult) {
  DHANDLE memory = 0;
  ASSERT_EQ(OSMemAlloc(0, 64, &memory), 0);
  EXPECT_STRICT(NAMELocateNextName(OSLockObject(memory), nullptr, &count_), "lookup result");
}

}  // namespace larkspan::standin_test
