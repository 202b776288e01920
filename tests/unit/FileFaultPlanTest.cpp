// The faults that other tests stand on: how a plan is read, and what a fault does.
#include "tests/faults/FileFaultPlan.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cerrno>
#include <climits>
#include <stdexcept>
#include <string>

#include "base/FileSystem.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan {
namespace {

TEST(FileFaultPlanTest, PlanOfNothingHasNoFaults) { EXPECT_TRUE(ParseFileFaultPlan("").empty()); }

TEST(FileFaultPlanTest, FaultHasItsOperationItsFileItsErrorAndItsBytes) {
  const FileFault fault = ParseFileFaultPlan(" write  Temp.tmp 2 diskFull 10 ").at(0);
  EXPECT_EQ(fault.operation, "write");
  EXPECT_EQ(fault.file, "temp.tmp");
  EXPECT_EQ(fault.error.runtimeError, ENOSPC);
  EXPECT_EQ(fault.error.systemError, DWORD{ERROR_DISK_FULL});
  EXPECT_EQ(fault.bytes, 10u);
}

TEST(FileFaultPlanTest, FaultsAreSeparatedBySemicolons) {
  const auto faults = ParseFileFaultPlan("move * 1 accessDenied; open log.txt 3 fileNotFound");
  ASSERT_EQ(faults.size(), 2u);
  EXPECT_EQ(faults[1].operation, "open");
}

struct Calls {
  const char* text;
  int first;
  int last;
};

class FileFaultCalls : public testing::TestWithParam<Calls> {};

TEST_P(FileFaultCalls, AreCountedFromOne) {
  const std::string plan = "open x " + std::string(GetParam().text) + " accessDenied";
  const FileFault fault = ParseFileFaultPlan(plan).at(0);
  EXPECT_EQ(fault.firstCall, GetParam().first);
  EXPECT_EQ(fault.lastCall, GetParam().last);
}

INSTANTIATE_TEST_SUITE_P(Forms, FileFaultCalls,
                         testing::Values(Calls{"1", 1, 1}, Calls{"12", 12, 12}, Calls{"2-4", 2, 4},
                                         Calls{"5-", 5, INT_MAX}, Calls{"*", 1, INT_MAX}));

class RefusedFileFault : public testing::TestWithParam<const char*> {};

TEST_P(RefusedFileFault, IsNoPlan) {
  EXPECT_THROW(ParseFileFaultPlan(GetParam()), std::invalid_argument);
}

INSTANTIATE_TEST_SUITE_P(Texts, RefusedFileFault,
                         testing::Values("open x 1", "rename x 1 diskFull", "open x 1 noSuchError",
                                         "open x 0 diskFull", "open x 4-2 diskFull",
                                         "open x one diskFull", "open x -1 diskFull",
                                         "open x 1 diskFull 5", "open x 1 noError",
                                         "write x 1 diskFull five", "write x 1 diskFull 5 5",
                                         "open x 1 diskFull;;"));

class FileFaultsTest : public testing::Test {
 protected:
  TempFolder folder_;
  const std::wstring path_ = folder_ / L"\\X.txt";
};

TEST_F(FileFaultsTest, OnlyTheNamedCallsFail) {
  const FileFaults faults("delete x.txt 2-3 sharingViolation");
  std::string results;
  for (int i = 0; i < 4; ++i) {
    WriteBytes(path_, "");
    results += file_system::Delete(path_) ? "+" : "-";
    if (i == 1) {
      EXPECT_EQ(GetLastError(), DWORD{ERROR_SHARING_VIOLATION});
    }
  }
  EXPECT_EQ(results, "+--+");
}

TEST_F(FileFaultsTest, WriteThatFailsFailsTheCloseWithItsReason) {
  const FileFaults faults("write x.txt 2 diskFull 1");
  file_system::UniqueFile file = file_system::Open(path_, L"w");
  EXPECT_EQ(file_system::Write(file.get(), "ab"), 2u);
  EXPECT_EQ(file_system::Write(file.get(), "cd"), 1u);
  errno = 0;
  EXPECT_FALSE(file_system::Close(std::move(file)));
  EXPECT_EQ(errno, ENOSPC);
  EXPECT_EQ(ReadBytes(path_), "abc");
}

TEST_F(FileFaultsTest, AppendingIsAnOpenAWriteAndAClose) {
  const FileFaults faults("write x.txt 2 diskFull 1");
  EXPECT_TRUE(file_system::Append(path_, "ab").complete);
  EXPECT_FALSE(file_system::Append(path_, "cd").complete);
  EXPECT_EQ(ReadBytes(path_), "abc");
  EXPECT_EQ(faults.OperationsAmong({"open x.txt", "close x.txt"}).size(), 4u);
}

TEST_F(FileFaultsTest, MoveHasTheNameThatTheFileWouldGet) {
  WriteBytes(path_, "");
  const FileFaults faults("move y.txt 1 accessDenied");
  EXPECT_FALSE(file_system::Move(path_, folder_ / L"\\Y.txt", file_system::Earlier::kStays));
  EXPECT_TRUE(file_system::Move(path_, folder_ / L"\\Y.txt", file_system::Earlier::kStays));
  EXPECT_EQ(faults.Operations(), (std::vector<std::string>{"move y.txt", "move y.txt"}));
}

TEST_F(FileFaultsTest, NothingFailsAfterwards) {
  { const FileFaults faults("open * * accessDenied"); }
  EXPECT_TRUE(file_system::Open(path_, L"w"));
}

}  // namespace
}  // namespace larkspan
