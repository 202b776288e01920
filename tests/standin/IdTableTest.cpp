// ID tables.
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

class IdTables : public StandinTest {
 protected:
  IdTables() {
    Start();
    EXPECT_EQ(IDCreateTable(0, &table_), 0);
  }

  void Insert(const std::vector<NOTEID>& ids) const {
    for (const NOTEID id : ids) EXPECT_EQ(IDInsert(table_, id, nullptr), 0);
  }

  std::vector<NOTEID> Scan() const {
    std::vector<NOTEID> ids;
    NOTEID id = 0xDEAD;
    for (BOOL first = 1; IDScan(table_, first, &id) != 0; first = 0) ids.push_back(id);
    return ids;
  }

  DHANDLE table_ = 0;
};

}  // namespace

TEST_F(IdTables, AreEmptyAtFirst) {
  EXPECT_EQ(IDEntries(table_), 0U);
  EXPECT_TRUE(Scan().empty());
}

TEST_F(IdTables, AreScannedInAscendingOrder) {
  Insert({0x90A, 0x7FFFFFFC, 0x11A, 0x40, 0x3F, 0x10000, 0xFFFF});
  EXPECT_EQ(Scan(), (std::vector<NOTEID>{0x3F, 0x40, 0x11A, 0x90A, 0xFFFF, 0x10000, 0x7FFFFFFC}));
}

TEST_F(IdTables, HoldTheSmallestAndTheLargestId) {
  Insert({0xFFFFFFFF, 0});
  EXPECT_EQ(Scan(), (std::vector<NOTEID>{0, 0xFFFFFFFF}));
}

TEST_F(IdTables, TellWhetherAnIdIsNew) {
  BOOL inserted = -1;
  EXPECT_EQ(IDInsert(table_, 8, &inserted), 0);
  EXPECT_EQ(inserted, 1);
  EXPECT_EQ(IDInsert(table_, 8, &inserted), 0);
  EXPECT_EQ(inserted, 0);
  EXPECT_EQ(IDEntries(table_), 1U);
}

TEST_F(IdTables, GoOnFromTheIdThatTheCallerNames) {
  Insert({4, 8, 12});
  NOTEID id = 5;
  EXPECT_EQ(IDScan(table_, 0, &id), 1);
  EXPECT_EQ(id, 8U);
}

TEST_F(IdTables, AreIndependentOfEachOther) {
  DHANDLE other = 0;
  EXPECT_EQ(IDCreateTable(0, &other), 0);
  Insert({4});
  EXPECT_EQ(IDEntries(other), 0U);
  EXPECT_EQ(IDDestroyTable(other), 0);
  EXPECT_EQ(IDEntries(table_), 1U);
}

}  // namespace larkspan::standin_test
