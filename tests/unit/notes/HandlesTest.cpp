#include "notes/Handles.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/NotesFixture.h"

namespace larkspan {
namespace {

// Handles of the tests' own, whose closing is recorded. Zero is handed over too, so that a wrongly
// closed one would be seen.
std::vector<int> closed;

void RecordClosing(int& handle) {
  if (handle != 0) closed.push_back(handle);
  handle = 0;
}

using Owner = UniqueHandle<int, RecordClosing>;
using Closed = std::vector<int>;

class UniqueHandleTest : public testing::Test {
 protected:
  UniqueHandleTest() { closed.clear(); }
};

TEST_F(UniqueHandleTest, IsNoHandleAtFirst) { EXPECT_EQ(Owner().get(), 0); }

TEST_F(UniqueHandleTest, HoldsItsHandle) { EXPECT_EQ(Owner(7).get(), 7); }

TEST_F(UniqueHandleTest, ClosesOnceAtItsEnd) {
  { const Owner owner(7); }
  EXPECT_EQ(closed, Closed{7});
}

TEST_F(UniqueHandleTest, ResetClosesAndLeavesNoHandle) {
  Owner owner(7);
  owner.reset();
  EXPECT_EQ(closed, Closed{7});
  EXPECT_EQ(owner.get(), 0);
}

TEST_F(UniqueHandleTest, ResetTwiceClosesOnce) {
  Owner owner(7);
  owner.reset();
  owner.reset();
  EXPECT_EQ(closed, Closed{7});
}

TEST_F(UniqueHandleTest, MovedFromHoldsNothingAndClosesNothing) {
  Owner owner(7);
  {
    const Owner taker(std::move(owner));
    EXPECT_EQ(taker.get(), 7);
    EXPECT_EQ(owner.get(), 0);
    EXPECT_EQ(closed, Closed());
  }
  EXPECT_EQ(closed, Closed{7});
}

TEST_F(UniqueHandleTest, MoveAssignmentClosesTheOldHandle) {
  Owner owner(7);
  Owner other(8);
  owner = std::move(other);
  EXPECT_EQ(closed, Closed{7});
  EXPECT_EQ(owner.get(), 8);
  EXPECT_EQ(other.get(), 0);
}

TEST_F(UniqueHandleTest, MoveAssignmentToItselfKeepsTheHandle) {
  Owner owner(7);
  Owner& same = owner;
  owner = std::move(same);
  EXPECT_EQ(owner.get(), 7);
  EXPECT_EQ(closed, Closed());
}

constexpr char kDatabase[] = R"({"notes": [
  {"id": "00000902"},
  {"id": "00000906", "class": "view"}
]})";

class ReleaseTest : public NotesFixture {
 protected:
  ReleaseTest() {
    WriteDatabase(kDatabase);
    WriteData(L"tester.id", R"({"name": "CN=Tester", "password": "secret"})");
    Start();
  }
};

TEST_F(ReleaseTest, ZeroHandlesAreNotHandedToTheLibrary) {
  notes_api::DHANDLE zero = 0;
  notes_api::HCOLLECTION zeroCollection = 0;
  notes_api::HKFC zeroKeyFile = nullptr;
  ReleaseDatabase(zero);
  ReleaseNote(zero);
  ReleaseIdTable(zero);
  ReleaseMemory(zero);
  ReleaseExporter(zero);
  ReleaseCollection(zeroCollection);
  ReleaseKeyFile(zeroKeyFile);
  for (const char* entry : {"NSFDbClose", "NSFNoteClose", "IDDestroyTable", "OSMemFree",
                            "DXLDeleteExporter", "NIFCloseCollection", "SECKFMClose"}) {
    EXPECT_EQ(Calls(entry), 0) << entry;
  }
}

TEST_F(ReleaseTest, DatabaseIsClosedOnceAndSetToZero) {
  notes_api::DHANDLE database = 0;
  ASSERT_EQ(notes_api::NSFDbOpen("test.nsf", &database), 0);
  ReleaseDatabase(database);
  EXPECT_EQ(database, 0u);
  ReleaseDatabase(database);
  EXPECT_EQ(Calls("NSFDbClose"), 1);
}

TEST_F(ReleaseTest, NoteIsClosedOnceAndSetToZero) {
  const Database database = OpenTestDatabase();
  notes_api::DHANDLE note = 0;
  ASSERT_EQ(notes_api::NSFNoteOpen(database.get(), 0x902, 0, &note), 0);
  ReleaseNote(note);
  EXPECT_EQ(note, 0u);
  ReleaseNote(note);
  EXPECT_EQ(Calls("NSFNoteClose"), 1);
}

TEST_F(ReleaseTest, IdTableIsDestroyedOnceAndSetToZero) {
  notes_api::DHANDLE table = 0;
  ASSERT_EQ(notes_api::IDCreateTable(0, &table), 0);
  ReleaseIdTable(table);
  EXPECT_EQ(table, 0u);
  ReleaseIdTable(table);
  EXPECT_EQ(Calls("IDDestroyTable"), 1);
}

TEST_F(ReleaseTest, MemoryIsFreedOnceAndSetToZero) {
  notes_api::DHANDLE memory = 0;
  ASSERT_EQ(notes_api::OSMemAlloc(0, 10, &memory), 0);
  ReleaseMemory(memory);
  EXPECT_EQ(memory, 0u);
  ReleaseMemory(memory);
  EXPECT_EQ(Calls("OSMemFree"), 1);
}

TEST_F(ReleaseTest, ExporterIsDeletedOnceAndSetToZero) {
  notes_api::DHANDLE exporter = 0;
  ASSERT_EQ(notes_api::DXLCreateExporter(&exporter), 0);
  ReleaseExporter(exporter);
  EXPECT_EQ(exporter, 0u);
  ReleaseExporter(exporter);
  EXPECT_EQ(Calls("DXLDeleteExporter"), 1);
}

TEST_F(ReleaseTest, CollectionIsClosedOnceAndSetToZero) {
  const Database database = OpenTestDatabase();
  notes_api::HCOLLECTION collection = 0;
  ASSERT_EQ(notes_api::NIFOpenCollection(database.get(), database.get(), 0x906, 0, 0, &collection,
                                         nullptr, nullptr, nullptr, nullptr),
            0);
  ReleaseCollection(collection);
  EXPECT_EQ(collection, 0);
  ReleaseCollection(collection);
  EXPECT_EQ(Calls("NIFCloseCollection"), 1);
}

TEST_F(ReleaseTest, KeyFileIsClosedOnceAndSetToZero) {
  notes_api::HKFC keyFile = nullptr;
  ASSERT_EQ(notes_api::SECKFMOpen(&keyFile, "tester.id", "secret", 1, 0, nullptr), 0);
  ReleaseKeyFile(keyFile);
  EXPECT_EQ(keyFile, nullptr);
  ReleaseKeyFile(keyFile);
  EXPECT_EQ(Calls("SECKFMClose"), 1);
}

TEST_F(ReleaseTest, HandleIsSetToZeroWhenClosingFails) {
  SetFaults(R"([{"entry": "IDDestroyTable", "status": 273}])");
  notes_api::DHANDLE table = 0;
  ASSERT_EQ(notes_api::IDCreateTable(0, &table), 0);
  const notes_api::DHANDLE opened = table;
  ReleaseIdTable(table);
  EXPECT_EQ(table, 0u);
  SetFaults("[]");
  notes_api::IDDestroyTable(opened);
}

}  // namespace
}  // namespace larkspan
