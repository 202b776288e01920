// Lines of the run log and the audit report that the disk or another program refuses.
#include <gtest/gtest.h>

#include <string>

#include "report/AuditReport.h"
#include "report/RunLog.h"
#include "supervision/AuditBlocks.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"
#include "tests/support/ParameterName.h"

namespace larkspan {
namespace {

// A fault of the second line of three, and how much is left of that line.
struct LineFault {
  const char* name;
  const char* operation;
  const char* error;
  std::size_t bytesLeft;
};

class ReportFault : public OutputFolderTest, public testing::WithParamInterface<LineFault> {
 protected:
  static std::string PlanFor(const std::string& file) {
    return std::string(GetParam().operation) + " " + file + " 2 " + GetParam().error;
  }
};

TEST_P(ReportFault, OfTheRunLogIsSilentAndTheNextLineIsAppended) {
  const FileFaults faults(PlanFor("log.txt"));
  for (int i = 0; i < 3; ++i) LogError(L"a line");
  const std::string line = "#ERROR# - a line\r\n";
  EXPECT_EQ(ReadBytes(PathOf(L"log.txt")), line + line.substr(0, GetParam().bytesLeft) + line);
}

TEST_P(ReportFault, OfTheAuditReportIsSilentAndTheNextTextIsAppended) {
  const FileFaults faults(PlanFor("audit.txt"));
  for (int i = 0; i < 3; ++i) Audit(L"a line\n");
  const std::string line = "a line\r\n";
  EXPECT_EQ(ReadBytes(PathOf(L"audit.txt")), line + line.substr(0, GetParam().bytesLeft) + line);
  EXPECT_FALSE(Exists(PathOf(L"log.txt")));
}

INSTANTIATE_TEST_SUITE_P(Faults, ReportFault,
                         testing::Values(LineFault{"HeldAtTheOpen", "open", "sharingViolation", 0},
                                         LineFault{"RefusedAtTheOpen", "open", "accessDenied", 0},
                                         LineFault{"DiskFull", "write", "diskFull", 0},
                                         LineFault{"DiskFullInTheLine", "write", "diskFull 3", 3},
                                         LineFault{"DiskFullAtTheClose", "close", "diskFull",
                                                   std::string::npos}),
                         kNameOf);

TEST_F(OutputFolderTest, ClosingBlockWithoutItsSourcesCountsNothingAndIsWhole) {
  WriteBytes(PathOf(L"idtable.txt"), "0000002A\r\n");
  WriteBytes(PathOf(L"log.txt"), "#WARNING# - Major: lost\r\n");
  const FileFaults faults("open idtable.txt * sharingViolation; open log.txt * sharingViolation");
  WriteAuditEnd(0, ProcessRunLog());
  const Lines audit = ReadLines(PathOf(L"audit.txt"));
  ASSERT_EQ(audit.size(), 11u);
  EXPECT_EQ(audit[2], "Database total documents :        0");
  EXPECT_EQ(audit[8], "Failed total documents   :        0");
}

}  // namespace
}  // namespace larkspan
