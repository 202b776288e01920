// What an open database tells of itself.
#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr char kNotes[] = R"({
  "notes": [{"id": "902", "modified": "2020-01-02"}, {"id": "906", "modified": "2019-01-02"},
            {"id": "90A", "class": "view", "modified": "2018-01-02"},
            {"id": "90E", "class": "folder", "modified": "2017-01-02"}],
  "deleted": [{"id": "912", "class": "view", "modified": "2020-01-02"}]})";

class DatabaseInfo : public StandinTest {
 protected:
  // Nothing but the field and its NUL is written.
  static std::string Field(DHANDLE database, WORD field, WORD limit = 127) {
    char info[128];
    EXPECT_EQ(NSFDbInfoGet(database, info), 0);
    std::string out(static_cast<std::size_t>(limit) + 2, '#');
    NSFDbInfoParse(info, field, out.data(), limit);
    const std::size_t length = out.find('\0');
    EXPECT_EQ(out.substr(length + 1), std::string(out.size() - length - 1, '#'));
    return out.substr(0, length);
  }

  struct Space {
    DWORD allocated, free, granule;
    bool operator==(const Space&) const = default;
  };

  static Space SpaceOf(DHANDLE database) {
    Space space = {};
    EXPECT_EQ(NSFDbSpaceUsageScaled(database, &space.allocated, &space.free, &space.granule), 0);
    return space;
  }

  static std::vector<NOTEID> Modified(DHANDLE database, WORD classMask, const TIMEDATE& since) {
    TIMEDATE until = {};
    DHANDLE table = 0;
    EXPECT_EQ(NSFDbGetModifiedNoteTable(database, classMask, since, &until, &table), 0);
    EXPECT_EQ(until.innards[1], 2458851U);
    std::vector<NOTEID> ids;
    NOTEID id = 0;
    for (BOOL more = IDScan(table, 1, &id); more != 0; more = IDScan(table, 0, &id)) {
      ids.push_back(id);
    }
    EXPECT_EQ(IDDestroyTable(table), 0);
    return ids;
  }
};

using Ids = std::vector<NOTEID>;

}  // namespace

TEST_F(DatabaseInfo, HoldsWhatMakesAReplica) {
  const DHANDLE database = OpenDatabase(R"({"replicaId": "C12583D0004D1A2B",
    "replica": {"flags": 33, "cutoffInterval": 91, "cutoff": "1970-01-01T00:00:01Z"}})");
  ReplicaInfo info = {};
  EXPECT_EQ(NSFDbReplicaInfoGet(database, &info), 0);
  EXPECT_EQ(info.replicaId.innards[1], 0xC12583D0);
  EXPECT_EQ(info.replicaId.innards[0], 0x004D1A2BU);
  EXPECT_EQ(info.flags, 33);
  EXPECT_EQ(info.cutoffInterval, 91);
  EXPECT_EQ(info.cutoff.innards[1], 2440588U);
  EXPECT_EQ(info.cutoff.innards[0], 100U);
}

TEST_F(DatabaseInfo, HoldsADatabaseIdOfItsOwn) {
  DatabaseId id = {};
  EXPECT_EQ(NSFDbIDGet(OpenDatabase(R"({"databaseId": "0123456789ABCDEF"})"), &id), 0);
  EXPECT_EQ(id.innards[1], 0x01234567U);
  EXPECT_EQ(id.innards[0], 0x89ABCDEFU);
  EXPECT_EQ(NSFDbIDGet(OpenDatabase(R"({"replicaId": "C12583D0004D1A2B"})"), &id), 0);
  EXPECT_EQ(id.innards[1], 0xC12583D0);
  EXPECT_NE(id.innards[0], 0x004D1A2BU);
}

TEST_F(DatabaseInfo, HoldsTitleAndCategories) {
  const DHANDLE database = OpenDatabase(R"({"title": "Gärten", "categories": "a, b"})");
  EXPECT_EQ(Field(database, kInfoTitle), ToNotes(std::string_view("Gärten")));
  EXPECT_EQ(Field(database, kInfoCategories), "a, b");
  const DHANDLE plain = OpenDatabase("{}");
  EXPECT_EQ(Field(plain, kInfoTitle), "");
  EXPECT_EQ(Field(plain, kInfoCategories), "");
}

TEST_F(DatabaseInfo, IsCutToABufferOf128Bytes) {
  const std::string many(200, 'x');
  const DHANDLE database =
      OpenDatabase(R"({"title": ")" + many + R"(", "categories": ")" + many + R"("})");
  EXPECT_EQ(Field(database, kInfoTitle), many.substr(0, 95));
  EXPECT_EQ(Field(database, kInfoCategories), many.substr(0, 31));
}

TEST_F(DatabaseInfo, MayFillItsBufferWithTheNulBehindIt) {
  Start();
  const std::string info(128, 'x');
  char out[200] = {};
  NSFDbInfoParse(info.c_str(), kInfoTitle, out, 199);
  EXPECT_EQ(out, info);
}

TEST_F(DatabaseInfo, IsParsedUpToALimitThatDoesNotCountTheNul) {
  const DHANDLE database = OpenDatabase(R"({"title": "abcdef", "categories": "ä1"})");
  EXPECT_EQ(Field(database, kInfoTitle, 4), "abcd");
  EXPECT_EQ(Field(database, kInfoTitle, 6), "abcdef");
  EXPECT_EQ(Field(database, kInfoTitle, 0), "");
  EXPECT_EQ(Field(database, kInfoCategories, 1), "");
}

TEST_F(DatabaseInfo, HoldsTheLastChanges) {
  TIMEDATE data = {}, other = {};
  EXPECT_EQ(NSFDbModifiedTime(OpenDatabase(kNotes), &data, &other), 0);
  EXPECT_EQ(data.innards[1], 2458851U);
  EXPECT_EQ(other.innards[1], 2458851U);
}

TEST_F(DatabaseInfo, HoldsOtherChangesWhenTheFileSaysSo) {
  TIMEDATE data = {}, other = {};
  EXPECT_EQ(NSFDbModifiedTime(OpenDatabase(R"({"dataModified": "1970-01-02T00:00:00.07Z",
                                               "designModified": "1970-01-01"})"),
                              &data, &other),
            0);
  EXPECT_EQ(data.innards[1], 2440589U);
  EXPECT_EQ(data.innards[0], 7U);
  EXPECT_EQ(other.innards[1], 2440588U);
  EXPECT_EQ(other.innards[0], 0xFFFFFFFF);
}

TEST_F(DatabaseInfo, HoldsAnyThreeNumbersOfSpace) {
  EXPECT_EQ(SpaceOf(OpenDatabase(R"({"space": {"allocatedGranules": 4294967295,
                                               "freeGranules": 7, "granuleBytes": 512}})")),
            (Space{4294967295, 7, 512}));
  EXPECT_EQ(SpaceOf(OpenDatabase(R"({"sizeKilobytes": 6144})")), (Space{6144, 0, 1024}));
  EXPECT_EQ(SpaceOf(OpenDatabase(R"({"sizeKilobytes": 8, "space": {"freeGranules": 3}})")),
            (Space{8, 3, 1024}));
}

TEST_F(DatabaseInfo, ListsNotesOfTheClassesThatWereModified) {
  const DHANDLE database = OpenDatabase(kNotes);
  const TIMEDATE earliest = {};
  EXPECT_EQ(Modified(database, 0x0008, earliest), (Ids{0x90A, 0x90E}));
  EXPECT_EQ(Modified(database, 0x0009, earliest), (Ids{0x902, 0x906, 0x90A, 0x90E}));
  EXPECT_EQ(Modified(database, 0x0200, earliest), Ids{});
  const TIMEDATE startOf2018 = {{0, 2458121}};
  EXPECT_EQ(Modified(database, 0x0008, startOf2018), Ids{0x90A});
  const TIMEDATE later = {{1, 2458121}};
  EXPECT_EQ(Modified(database, 0x0008, later), Ids{});
}

TEST_F(DatabaseInfo, RecordsWhatAListWasAskedFor) {
  const DHANDLE database = OpenDatabase(kNotes);
  Modified(database, 0x0008, {{0, 2440588}});
  EXPECT_EQ(RecordedArguments("NSFDbGetModifiedNoteTable"),
            nlohmann::json({{"classMask", 8}, {"since", "19700101T000000,00+00"}}));
}

TEST_F(DatabaseInfo, FailsAsAFaultPlanSays) {
  const DHANDLE database = OpenDatabase(kNotes);
  StandinSetFaults(R"([{"entry": "NSFDbReplicaInfoGet", "status": 1},
    {"entry": "NSFDbIDGet", "status": 2}, {"entry": "NSFDbInfoGet", "status": 3},
    {"entry": "NSFDbModifiedTime", "status": 4}, {"entry": "NSFDbSpaceUsageScaled", "status": 5},
    {"entry": "NSFDbGetModifiedNoteTable", "status": 6},
    {"entry": "NSFDbInfoParse", "status": 7}])");
  char text[128] = "untouched";
  EXPECT_EQ(NSFDbReplicaInfoGet(database, nullptr), 1);
  EXPECT_EQ(NSFDbIDGet(database, nullptr), 2);
  EXPECT_EQ(NSFDbInfoGet(database, nullptr), 3);
  EXPECT_EQ(NSFDbModifiedTime(database, nullptr, nullptr), 4);
  EXPECT_EQ(NSFDbSpaceUsageScaled(database, nullptr, nullptr, nullptr), 5);
  EXPECT_EQ(NSFDbGetModifiedNoteTable(database, 8, {}, nullptr, nullptr), 6);
  NSFDbInfoParse(nullptr, kInfoTitle, text, 127);
  EXPECT_STREQ(text, "untouched");
}

TEST_F(DatabaseInfo, DoesNotOpenWhenItMakesNoSense) {
  Start();
  int number = 0;
  for (const char* damaged :
       {R"({"databaseId": "0123"})", R"({"databaseId": 7})", R"({"space": {"granules": 1}})",
        R"({"dataModified": "soon"})", R"({"replica": {"cutoff": 3}})", R"({"categories": []})"}) {
    const std::string name = std::to_string(++number) + ".nsf";
    WriteFile(name, damaged);
    DHANDLE database = 0;
    EXPECT_EQ(NSFDbOpen(name.c_str(), &database), 554) << damaged;
  }
}

}  // namespace larkspan::standin_test
