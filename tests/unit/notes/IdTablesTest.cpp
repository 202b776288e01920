#include "notes/IdTables.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

#include "tests/support/NotesFixture.h"
#include "tests/support/ReplacedEntryPoint.h"

namespace larkspan {
namespace {

using Ids = std::vector<std::uint32_t>;

class IdTablesTest : public NotesFixture {
 protected:
  IdTablesTest() {
    Start();
    EXPECT_TRUE(CreateIdTable(table_).ok());
  }

  void Insert(const Ids& ids) {
    for (const std::uint32_t id : ids) EXPECT_TRUE(InsertId(table_, id).ok());
  }

  Ids Scanned() const {
    Ids ids;
    const ScanEnd end = ScanIds(table_, [&](std::uint32_t id) {
      ids.push_back(id);
      return true;
    });
    EXPECT_EQ(end, ScanEnd::kEndOfTable);
    return ids;
  }

  IdTable table_;
};

TEST_F(IdTablesTest, TableIsCreatedEmptyWithFlagsZero) {
  EXPECT_EQ(Arguments("IDCreateTable"), R"({"flags":0})");
  EXPECT_EQ(CountIds(table_), 0u);
}

TEST_F(IdTablesTest, CreationThatFailsLeavesNoTable) {
  SetFaults(R"([{"entry": "IDCreateTable", "status": 273}])");
  EXPECT_EQ(CreateIdTable(table_).code(), 273);
  EXPECT_EQ(table_.get(), 0u);
}

TEST_F(IdTablesTest, EachIdCountsOnce) {
  Insert({0x902, 0x906, 0x902});
  EXPECT_EQ(CountIds(table_), 2u);
}

TEST_F(IdTablesTest, InsertionThatFailsIsTold) {
  SetFaults(R"([{"entry": "IDInsert", "note": "00000902", "status": 273}])");
  EXPECT_EQ(InsertId(table_, 0x902).code(), 273);
}

TEST_F(IdTablesTest, EmptyTableIsScannedWithoutAVisit) { EXPECT_EQ(Scanned(), Ids()); }

TEST_F(IdTablesTest, ScanIsInAscendingUnsignedOrder) {
  Insert({0x80000002, 0x906, 0xFFFFFFFE, 0x902, 0x7FFFFFFE});
  EXPECT_EQ(Scanned(), (Ids{0x902, 0x906, 0x7FFFFFFE, 0x80000002, 0xFFFFFFFE}));
}

TEST_F(IdTablesTest, EveryScanBeginsAtTheFirstId) {
  Insert({0x902, 0x906});
  Scanned();
  EXPECT_EQ(Scanned(), (Ids{0x902, 0x906}));
}

TEST_F(IdTablesTest, ScanStopsWhenTheVisitorWantsNoMore) {
  Insert({0x902, 0x906, 0x90A});
  Ids visited;
  const ScanEnd end = ScanIds(table_, [&](std::uint32_t id) {
    visited.push_back(id);
    return id != 0x906;
  });
  EXPECT_EQ(end, ScanEnd::kStoppedByVisitor);
  EXPECT_EQ(visited, (Ids{0x902, 0x906}));
}

TEST_F(IdTablesTest, ScanThatTheLibraryEndsEarlyFails) {
  Insert({0x902, 0x906, 0x90A});
  SetFaults(R"([{"entry": "IDScan", "call": 3, "status": 1}])");
  Ids visited;
  const ScanEnd end = ScanIds(table_, [&](std::uint32_t id) {
    visited.push_back(id);
    return true;
  });
  EXPECT_EQ(end, ScanEnd::kFailed);
  EXPECT_EQ(visited, (Ids{0x902, 0x906}));
}

notes_api::BOOL* insertedPlace = nullptr;

notes_api::STATUS LARKSPAN_NOTES_CALL RecordInsertedPlace(notes_api::DHANDLE, notes_api::NOTEID,
                                                          notes_api::BOOL* inserted) {
  insertedPlace = inserted;
  return 0;
}

TEST_F(IdTablesTest, InsertionDoesNotAskWhetherTheIdIsNew) {
  notes_api::BOOL some = 0;
  insertedPlace = &some;
  const ReplacedEntryPoint replaced("IDInsert", RecordInsertedPlace);
  EXPECT_TRUE(InsertId(table_, 0x902).ok());
  EXPECT_EQ(insertedPlace, nullptr);
}

}  // namespace
}  // namespace larkspan
