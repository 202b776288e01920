// Placements that the disk or another program refuses, at every stage.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/FileSystem.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/ParameterName.h"
#include "tests/unit/export/FilePlacementTest.h"

namespace larkspan {
namespace {

class FilePlacementFaultTest : public FilePlacementTest {
 protected:
  void ExpectNoFile() const {
    EXPECT_FALSE(Exists(temporary_));
    EXPECT_FALSE(Exists(final_));
  }

  const PauseRecorder recorder_;
};

struct OutputFault {
  const char* name;
  const char* plan;
  Lines log;
};

// Ten bytes on the disk, one of which is the carriage return of a line end.
const Lines kOnlyTenBytes = {"#DEBUG# - Only wrote 9 bytes of 50 to temp file: temp.tmp"};
const Lines kNotClosed = {"#DEBUG# - Unable to close temp file: temp.tmp"};

// Faults of the second chunk.
class OutputFaultTest : public FilePlacementFaultTest,
                        public testing::WithParamInterface<OutputFault> {};

TEST_P(OutputFaultTest, FailsTheExportAndLeavesNoFile) {
  const FileFaults faults(GetParam().plan);
  EXPECT_EQ(ExportNote().code(), 270);
  EXPECT_EQ(LogLines(), GetParam().log);
  EXPECT_EQ(recorder_.pauses(), std::vector<long long>());
  ExpectNoFile();
}

TEST_P(OutputFaultTest, DropsTheChunksThatFollow) {
  const FileFaults faults(GetParam().plan);
  EXPECT_FALSE(ExportNote().ok());
  EXPECT_EQ(faults.OperationsAmong({"open temp.tmp"}).size(), 2u);
}

TEST_P(OutputFaultTest, IsForgottenByTheNextExport) {
  const FileFaults faults(GetParam().plan);
  EXPECT_FALSE(ExportNote().ok());
  EXPECT_TRUE(ExportNote().ok());
  EXPECT_TRUE(ReadBytes(final_).ends_with("</document>\r\n"));
}

INSTANTIATE_TEST_SUITE_P(
    Faults, OutputFaultTest,
    testing::Values(
        OutputFault{"HeldAtTheOpen",
                    "open temp.tmp 2 sharingViolation",
                    {"#DEBUG# - Unable to open temp file for writing: temp.tmp"}},
        OutputFault{"DiskFullAtTheWrite", "write temp.tmp 2 diskFull 10", kOnlyTenBytes},
        OutputFault{"ShortWriteWithoutAnError", "write temp.tmp 2 noError 10", kOnlyTenBytes},
        OutputFault{"DiskFullAtTheClose", "close temp.tmp 2 diskFull", kNotClosed}),
    kNameOf);

struct Retried {
  const char* name;
  const char* operation;  // With the name of its file.
  const char* words;
  int finalCode;
  const char* finalLine;
};

// An operation that fails k times, for every k, with every error that is worth another attempt.
class RetriedOperation : public FilePlacementFaultTest,
                         public testing::WithParamInterface<Retried> {
 protected:
  static std::string Failing(int times, const std::string& error) {
    return std::string(GetParam().operation) + " 1-" + std::to_string(times) + " " + error;
  }
};

const char* const kErrorsOfAMoment[] = {"sharingViolation", "accessDenied", "pathNotFound"};

TEST_P(RetriedOperation, SucceedsAfterUpToFourFailures) {
  Lines expected;
  for (const char* error : kErrorsOfAMoment) {
    for (int times = 1; times <= 4; ++times) {
      const FileFaults faults(Failing(times, error));
      EXPECT_TRUE(ExportNote().ok()) << times << error;
      EXPECT_TRUE(file_system::Delete(final_)) << times << error;
      const Lines retries = RetryLines(GetParam().words, times);
      expected.insert(expected.end(), retries.begin(), retries.end());
    }
  }
  EXPECT_EQ(LogLines(), expected);
  EXPECT_EQ(recorder_.pauses(), std::vector<long long>(expected.size(), 1000));
}

TEST_P(RetriedOperation, IsGivenUpAfterFiveFailures) {
  for (const char* error : kErrorsOfAMoment) {
    WriteBytes(PathOf(L"log.txt"), "");
    const FileFaults faults(Failing(5, error));
    EXPECT_EQ(ExportNote().code(), GetParam().finalCode) << error;
    EXPECT_EQ(LogLines(), With(RetryLines(GetParam().words, 4), GetParam().finalLine)) << error;
    ExpectNoFile();
  }
}

INSTANTIATE_TEST_SUITE_P(Operations, RetriedOperation,
                         testing::Values(Retried{"Delete", "delete temp.tmp",
                                                 "delete DXL temporary file", 260, kNotDeleted},
                                         Retried{"Move", "move 00000902.dxl",
                                                 "move DXL file into place", 264, kNotMoved}),
                         kNameOf);

TEST_F(FilePlacementFaultTest, TemporaryFileThatIsMissingCountsAsDeleted) {
  const FileFaults faults("delete temp.tmp * fileNotFound");
  EXPECT_TRUE(ExportNote().ok());
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(FilePlacementFaultTest, FileThatMovesNowhereIsDeletedAfterwards) {
  const FileFaults faults("move * * sharingViolation; delete temp.tmp 2- sharingViolation");
  EXPECT_EQ(ExportNote().code(), 264);
  EXPECT_EQ(faults.OperationsAmong({"delete temp.tmp"}).size(), 2u);
  EXPECT_TRUE(Exists(temporary_));
}

TEST_F(FilePlacementFaultTest, AclMeetsTheSameFaults) {
  const FileFaults faults("write temp.tmp 1 diskFull; move acl.dxl 1-5 accessDenied");
  EXPECT_EQ(ExportAclToFile(exporter_, database_).code(), 270);
  EXPECT_EQ(ExportAclToFile(exporter_, database_).code(), 264);
  EXPECT_FALSE(Exists(PathOf(L"acl.dxl")));
}

}  // namespace
}  // namespace larkspan
