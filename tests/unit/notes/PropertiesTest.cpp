#include "notes/Properties.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>

#include "notes/Database.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::DHANDLE;
using notes_api::STATUS;
using notes_api::WORD;

class PropertiesTest : public NotesFixture {
 protected:
  PropertiesTest() {
    WriteDatabase(R"({"sizeKilobytes": 6144})");
    WriteData(L"servers/Garden/bulbs.nsf", "{}");
    Start();
  }

  static DatabaseLocation LocationOf(const std::string& path) {
    Database database;
    EXPECT_TRUE(OpenDatabase(path, database).ok());
    DatabaseLocation location;
    locationStatus_ = GetDatabaseLocation(database, location);
    return location;
  }

  static inline Status locationStatus_;
  Database database_;
  std::uint64_t bytes_ = 1;
};

// As many bytes as it may, and no NUL behind them.
void LARKSPAN_NOTES_CALL FillField(const char*, WORD, char* out, WORD limit) {
  std::memset(out, 'x', limit);
}

TEST_F(PropertiesTest, TitlesHaveAtMost1023Bytes) {
  const ReplacedEntryPoint replaced("NSFDbInfoParse", FillField);
  DatabaseInformation information;
  ASSERT_TRUE(information.Get(OpenTestDatabase()).ok());
  EXPECT_EQ(information.Title(), std::string(1023, 'x'));
  EXPECT_EQ(information.Categories(), std::string(1023, 'x'));
}

TEST_F(PropertiesTest, LocationOfALocalDatabaseHasNoServer) {
  const DatabaseLocation location = LocationOf("test.nsf");
  EXPECT_EQ(location.server, "");
  EXPECT_EQ(location.file, "test.nsf");
}

TEST_F(PropertiesTest, LocationIsServerAndFile) {
  const DatabaseLocation location = LocationOf("Garden!!bulbs.nsf");
  EXPECT_EQ(location.server, "Garden");
  EXPECT_EQ(location.file, "bulbs.nsf");
}

TEST_F(PropertiesTest, LocationLeavesThePortOut) {
  const DatabaseLocation location = LocationOf("TCPIP!!!Garden!!bulbs.nsf");
  EXPECT_EQ(location.server, "Garden");
  EXPECT_EQ(location.file, "bulbs.nsf");
}

TEST_F(PropertiesTest, LocationHoldsAFileOf255Bytes) {
  const std::string path = std::string(247, '/').replace(0, 1, ".") + "test.nsf";
  EXPECT_EQ(LocationOf(path).file, path);
}

STATUS LARKSPAN_NOTES_CALL TellPathWithoutEnd(DHANDLE, char* path, char*) {
  std::memset(path, 'x', 1024);
  return 0;
}

TEST_F(PropertiesTest, PathHasUpTo1023BytesEvenWithoutEnd) {
  const ReplacedEntryPoint replaced("NSFDbPathGet", TellPathWithoutEnd);
  std::string path;
  EXPECT_TRUE(GetDatabasePath(database_, path).ok());
  EXPECT_EQ(path, std::string(1023, 'x'));
}

TEST_F(PropertiesTest, LocationIsEmptyWithoutPath) {
  SetFaults(R"([{"entry": "NSFDbPathGet", "status": 1000}])");
  const DatabaseLocation location = LocationOf("Garden!!bulbs.nsf");
  EXPECT_EQ(locationStatus_.code(), 1000);
  EXPECT_EQ(location.server, "");
  EXPECT_EQ(location.file, "");
}

TEST_F(PropertiesTest, LocationIsEmptyWhenThePathCannotBeSplit) {
  SetFaults(R"([{"entry": "OSPathNetParse", "status": 1000}])");
  const DatabaseLocation location = LocationOf("Garden!!bulbs.nsf");
  EXPECT_EQ(locationStatus_.code(), 1000);
  EXPECT_EQ(location.server, "");
  EXPECT_EQ(location.file, "");
}

TEST_F(PropertiesTest, SizeIsInBytes) {
  EXPECT_TRUE(GetDatabaseSize("test.nsf", bytes_).ok());
  EXPECT_EQ(bytes_, 6144u * 1024u);
}

TEST_F(PropertiesTest, SizeIsNotCutAt32Bits) {
  WriteData(L"large.nsf", R"({"sizeKilobytes": 4294967295})");
  EXPECT_TRUE(GetDatabaseSize("large.nsf", bytes_).ok());
  EXPECT_EQ(bytes_, 4398046510080u);
}

TEST_F(PropertiesTest, SizeIsTheCurrentOneAndNoneOfTheOthers) {
  WriteData(L"limits.nsf", R"({"sizeKilobytes": 3, "quota":
    {"warningKilobytes": 1, "limitKilobytes": 2, "maximumKilobytes": 4}})");
  EXPECT_TRUE(GetDatabaseSize("limits.nsf", bytes_).ok());
  EXPECT_EQ(bytes_, 3072u);
}

TEST_F(PropertiesTest, SizeThatTheLibraryDoesNotTellIsAFailure) {
  WriteData(L"unknown.nsf", R"({"quota": "unavailable"})");
  EXPECT_EQ(GetDatabaseSize("unknown.nsf", bytes_).code(), 562);
}

}  // namespace
}  // namespace larkspan
