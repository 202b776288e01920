// Opening databases, and what they tell of themselves.
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr STATUS kMissing = 259;
constexpr STATUS kDamaged = 554;
constexpr STATUS kNoAccess = 582;
constexpr char kMe[] = "CN=Larkspan Tester/O=Example";

class Databases : public StandinTest {
 protected:
  static STATUS Open(const std::string& path, DHANDLE* database = nullptr) {
    DHANDLE opened = 0;
    const STATUS status = NSFDbOpen(path.c_str(), &opened);
    if (database != nullptr) *database = opened;
    return status;
  }

  static STATUS OpenWith(const std::string& path, DHANDLE names) {
    DHANDLE database = 0;
    TIMEDATE data = {}, other = {};
    const STATUS status =
        NSFDbOpenExtended(path.c_str(), 0, names, nullptr, &database, &data, &other);
    EXPECT_EQ(OSMemFree(names), 0);
    return status;
  }
};

}  // namespace

TEST_F(Databases, ThatAreMissingDoNotOpen) {
  Start();
  EXPECT_EQ(Open("none.nsf"), kMissing);
  EXPECT_EQ(Open("Garden!!none.nsf"), kMissing);
}

TEST_F(Databases, ThatAreNoJsonOrHaveUnknownKeysDoNotOpen) {
  Start();
  WriteFile("a.nsf", "no JSON");
  WriteFile("b.nsf", R"({"nots": []})");
  WriteFile("c.nsf", R"({"notes": [{"id": "902"}, {"id": "902"}]})");
  EXPECT_EQ(Open("a.nsf"), kDamaged);
  EXPECT_EQ(Open("b.nsf"), kDamaged);
  EXPECT_EQ(Open("c.nsf"), kDamaged);
}

TEST_F(Databases, OpenBelowTheDataFolderAndBelowItsServers) {
  Start();
  WriteFile("mail/a.nsf", "{}");
  WriteFile("servers/Garden/mail/b.nsf", "{}");
  EXPECT_EQ(Open("mail\\a.nsf"), 0);
  EXPECT_EQ(Open("Garden!!mail\\b.nsf"), 0);
  EXPECT_EQ(Open("TCPIP!!!Garden!!mail/b.nsf"), 0);
  EXPECT_EQ(Open("mail\\b.nsf"), kMissing);
}

TEST_F(Databases, OpenByAbsolutePath) {
  Start();
  WriteFile("a.nsf", "{}");
  EXPECT_EQ(Open((folder() / "a.nsf").string()), 0);
}

TEST_F(Databases, TellThePathTheyWereOpenedBy) {
  Start();
  WriteFile("servers/Garden/b.nsf", "{}");
  DHANDLE database = 0;
  ASSERT_EQ(Open("Garden!!b.nsf", &database), 0);
  char canonical[1024], expanded[1024];
  EXPECT_EQ(NSFDbPathGet(database, canonical, expanded), 0);
  EXPECT_STREQ(canonical, "Garden!!b.nsf");
  EXPECT_EQ(NSFDbPathGet(database, nullptr, nullptr), 0);
}

TEST_F(Databases, TellTheFullPathOfALocalFile) {
  const DHANDLE database = OpenDatabase("{}");
  char canonical[1024], expanded[1024];
  EXPECT_EQ(NSFDbPathGet(database, canonical, expanded), 0);
  EXPECT_STREQ(canonical, "test.nsf");
  EXPECT_EQ(std::string(expanded), ToNotes((folder() / "test.nsf").u16string()));
}

TEST_F(Databases, ForFullAccessOnlyOpenWithTheRightNamesListAlone) {
  Start();
  WriteFile("a.nsf", R"({"access": "fullAccessOnly"})");
  EXPECT_EQ(Open("a.nsf"), kNoAccess);
  EXPECT_EQ(OpenWith("a.nsf", MakeNamesList(kMe, 7)), 0);
  EXPECT_EQ(OpenWith("a.nsf", MakeNamesList(kMe, 6)), kNoAccess);
  EXPECT_EQ(OpenWith("a.nsf", MakeNamesList("CN=Somebody/O=Else", 7)), kNoAccess);
}

TEST_F(Databases, ForEveryoneOpenWithANamesListToo) {
  Start();
  WriteFile("a.nsf", "{}");
  EXPECT_EQ(OpenWith("a.nsf", MakeNamesList(kMe, 7)), 0);
}

TEST_F(Databases, TellTheirLastChangesOnAnExtendedOpen) {
  Start();
  WriteFile("a.nsf", R"({"notes": [
    {"id": "902", "modified": "2020-01-02"}, {"id": "906", "modified": "2019-01-02"},
    {"id": "90A", "class": "form", "modified": "2018-01-02"}]})");
  DHANDLE database = 0;
  TIMEDATE data = {}, other = {};
  ASSERT_EQ(NSFDbOpenExtended("a.nsf", 0, 0, nullptr, &database, &data, &other), 0);
  EXPECT_EQ(data.innards[1], 2458851U);
  EXPECT_EQ(other.innards[1], 2458121U);
}

TEST_F(Databases, TellTheirQuota) {
  Start();
  WriteFile("a.nsf", R"({"sizeKilobytes": 6144,
    "quota": {"warningKilobytes": 1, "limitKilobytes": 2, "maximumKilobytes": 3}})");
  QuotaInfo quota = {};
  EXPECT_EQ(NSFDbQuotaGet("a.nsf", &quota), 0);
  EXPECT_EQ(quota.warningThreshold, 1U);
  EXPECT_EQ(quota.sizeLimit, 2U);
  EXPECT_EQ(quota.currentSize, 6144U);
  EXPECT_EQ(quota.maximumSize, 3U);
}

TEST_F(Databases, AreAsLargeAsTheirFileWhenTheyDoNotSay) {
  Start();
  WriteFile("a.nsf", "{}" + std::string(2047, ' '));
  QuotaInfo quota = {};
  EXPECT_EQ(NSFDbQuotaGet("a.nsf", &quota), 0);
  EXPECT_EQ(quota.currentSize, 3U);
}

TEST_F(Databases, MayHaveNoQuotaToTell) {
  Start();
  WriteFile("a.nsf", R"({"quota": "unavailable"})");
  QuotaInfo quota = {};
  EXPECT_EQ(NSFDbQuotaGet("a.nsf", &quota), 562);
  EXPECT_EQ(NSFDbQuotaGet("none.nsf", &quota), kMissing);
}

}  // namespace larkspan::standin_test
