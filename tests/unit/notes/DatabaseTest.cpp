#include "notes/Database.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "notes/Identity.h"
#include "notes/Memory.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using notes_api::DHANDLE;
using notes_api::STATUS;
using notes_api::TIMEDATE;
using notes_api::WORD;

class DatabaseTest : public NotesFixture {
 protected:
  DatabaseTest() {
    WriteDatabase("{}");
    WriteData(L"locked.nsf", R"({"access": "fullAccessOnly"})");
    WriteData(L"servers/Garden/bulbs.nsf", "{}");
    Start();
  }

  Database database_;
};

TEST_F(DatabaseTest, PathIsTranslated) {
  std::string path;
  EXPECT_TRUE(PathToNotes(L"M\u00fchle!!", path).ok());
  EXPECT_EQ(path, "M\x01\xFChle!!");
  EXPECT_TRUE(PathToNotes(L"", path).ok());
  EXPECT_EQ(path, "");
}

TEST_F(DatabaseTest, PathThatTheLibraryDoesNotTranslateIsAFailure) {
  SetFaults(R"([{"entry": "OSTranslate", "status": 1}])");
  std::string path;
  EXPECT_EQ(PathToNotes(L"a.nsf", path).code(), 274);
}

TEST_F(DatabaseTest, OpensByPath) {
  EXPECT_TRUE(OpenDatabase("test.nsf", database_).ok());
  EXPECT_NE(database_.get(), 0u);
}

TEST_F(DatabaseTest, OpensByServerAndPath) {
  EXPECT_TRUE(OpenDatabase("Garden!!bulbs.nsf", database_).ok());
}

TEST_F(DatabaseTest, MissingDatabaseDoesNotOpen) {
  EXPECT_EQ(OpenDatabase("missing.nsf", database_).code(), 259);
  EXPECT_EQ(database_.get(), 0u);
}

TEST_F(DatabaseTest, PlainOpenHasNoFullAccess) {
  EXPECT_EQ(OpenDatabase("locked.nsf", database_).code(), 582);
  EXPECT_EQ(Calls("NSFDbOpenExtended"), 0);
}

TEST_F(DatabaseTest, FullAccessOpensWhatOthersMayNot) {
  EXPECT_TRUE(OpenDatabaseFullAccess("locked.nsf", database_).ok());
  EXPECT_EQ(Calls("NSFDbOpen"), 0);
}

TEST_F(DatabaseTest, FullAccessNamesTheCurrentUser) {
  EXPECT_TRUE(OpenDatabaseFullAccess("locked.nsf", database_).ok());
  EXPECT_EQ(Arguments("NSFDbOpenExtended"),
            R"({"hasSince":false,"names":{"authentication":7,"name":)"
            R"("CN=Larkspan Tester/O=Example"},"options":0,"path":"locked.nsf"})");
}

TEST_F(DatabaseTest, FullAccessAllocatesTheNameAnd17Bytes) {
  EXPECT_TRUE(OpenDatabaseFullAccess("locked.nsf", database_).ok());
  EXPECT_EQ(Arguments("OSMemAlloc"), R"({"size":45,"type":0})");
}

TEST_F(DatabaseTest, FullAccessFreesTheNamesListAfterTheOpen) {
  EXPECT_TRUE(OpenDatabaseFullAccess("locked.nsf", database_).ok());
  EXPECT_EQ(Order({"SECKFMGetUserName", "OSMemAlloc", "OSLockObject", "OSUnlockObject",
                   "NSFDbOpenExtended", "OSMemFree"}),
            (Lines{"SECKFMGetUserName", "OSMemAlloc", "OSLockObject", "OSUnlockObject",
                   "NSFDbOpenExtended", "OSMemFree"}));
}

TEST_F(DatabaseTest, FullAccessFreesTheNamesListAfterAnOpenThatFailed) {
  EXPECT_EQ(OpenDatabaseFullAccess("missing.nsf", database_).code(), 259);
  EXPECT_EQ(Calls("OSMemFree"), 1);
}

TEST_F(DatabaseTest, FullAccessWithoutUserNameOpensNothing) {
  SetFaults(R"([{"entry": "SECKFMGetUserName", "status": 1000}])");
  EXPECT_EQ(OpenDatabaseFullAccess("locked.nsf", database_).code(), 1000);
  EXPECT_EQ(Calls("OSMemAlloc"), 0);
}

TEST_F(DatabaseTest, FullAccessWithoutMemoryOpensNothing) {
  SetFaults(R"([{"entry": "OSMemAlloc", "status": 273}])");
  EXPECT_EQ(OpenDatabaseFullAccess("locked.nsf", database_).code(), 273);
  EXPECT_EQ(Calls("NSFDbOpenExtended"), 0);
}

TEST_F(DatabaseTest, FullAccessWithoutALockOpensNothingAndFreesTheNamesList) {
  SetFaults(R"([{"entry": "OSLockObject", "status": 273}])");
  EXPECT_EQ(OpenDatabaseFullAccess("locked.nsf", database_).code(), 272);
  EXPECT_EQ(Calls("NSFDbOpenExtended"), 0);
  EXPECT_EQ(LeftOpen(), kNothingOpen);
}

// What a names list held when the database was opened with it.
std::vector<unsigned char> namesList;

STATUS LARKSPAN_NOTES_CALL RecordNamesList(const char*, WORD, DHANDLE list, TIMEDATE*, DHANDLE*,
                                           TIMEDATE*, TIMEDATE*) {
  constexpr std::size_t kLength = 45;
  const auto* const bytes = static_cast<const unsigned char*>(notes_api::OSLockObject(list));
  namesList.assign(bytes, bytes + kLength);
  notes_api::OSUnlockObject(list);
  return 1000;
}

STATUS LARKSPAN_NOTES_CALL AllocateFilled(WORD type, notes_api::DWORD size, DHANDLE* memory) {
  const STATUS status = Original("OSMemAlloc", notes_api::OSMemAlloc)(type, size, memory);
  std::memset(notes_api::OSLockObject(*memory), 0xEE, size);
  notes_api::OSUnlockObject(*memory);
  return status;
}

TEST_F(DatabaseTest, NamesListIsLaidOutByteForByte) {
  const ReplacedEntryPoint allocation("OSMemAlloc", AllocateFilled);
  const ReplacedEntryPoint opening("NSFDbOpenExtended", RecordNamesList);
  EXPECT_EQ(OpenDatabaseFullAccess("locked.nsf", database_).code(), 1000);
  std::vector<unsigned char> expected = {1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xEE, 0xEE, 7, 0, 0, 0};
  const std::string name = "CN=Larkspan Tester/O=Example";
  expected.insert(expected.end(), name.c_str(), name.c_str() + name.size() + 1);
  EXPECT_EQ(namesList, expected);
}

}  // namespace
}  // namespace larkspan
