// Placements that the disk or another program refuses, at every stage.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/FileSystem.h"
#include "export/FilePlacement.h"
#include "notes/DxlExporter.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/NotesFixture.h"
#include "tests/support/PauseRecorder.h"

namespace larkspan {
namespace {

// Places the DXL of one note, which comes in chunks of 50 bytes.
class FilePlacementFaultTest : public NotesFixture {
 protected:
  FilePlacementFaultTest() {
    WriteDatabase(R"({"chunkBytes": 50, "notes": [{"id": "00000902"}]})");
    Start();
    database_ = OpenTestDatabase();
    note_ = OpenTestNote(database_, 0x902);
    EXPECT_TRUE(CreateExporter(exporter_).ok());
  }

  Status ExportNote() { return ExportNoteToFile(exporter_, note_, L"\\00000902.dxl"); }

  void ExpectNoFile() const {
    EXPECT_FALSE(Exists(PathOf(L"temp.tmp")));
    EXPECT_FALSE(Exists(PathOf(L"00000902.dxl")));
  }

  Database database_;
  Note note_;
  Exporter exporter_;
  const PauseRecorder recorder_;
};

struct OutputFault {
  const char* name;
  const char* plan;
  Lines log;
};

const Lines kOnlyTenBytes = {"#DEBUG# - Only wrote 10 bytes of 50 to temp file: temp.tmp"};

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
  EXPECT_TRUE(ReadBytes(PathOf(L"00000902.dxl")).ends_with("</document>\r\n"));
}

const auto kNameOf = [](const auto& info) { return info.param.name; };

INSTANTIATE_TEST_SUITE_P(
    Faults, OutputFaultTest,
    testing::Values(
        OutputFault{"HeldAtTheOpen",
                    "open temp.tmp 2 sharingViolation",
                    {"#DEBUG# - Unable to open temp file for writing: temp.tmp"}},
        OutputFault{"DiskFullAtTheWrite", "write temp.tmp 2 diskFull 10", kOnlyTenBytes},
        OutputFault{"ShortWriteWithoutAnError", "write temp.tmp 2 noError 10", kOnlyTenBytes},
        OutputFault{"DiskFullAtTheClose", "close temp.tmp 2 diskFull", {}}),
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

  static Lines RetryLines(int count) {
    Lines lines;
    for (int made = 1; made <= count; ++made) {
      lines.push_back("#DEBUG# - Retrying " + std::string(GetParam().words) + ": " +
                      std::to_string(made));
    }
    return lines;
  }
};

const char* const kErrorsOfAMoment[] = {"sharingViolation", "accessDenied", "pathNotFound"};

TEST_P(RetriedOperation, SucceedsAfterUpToFourFailures) {
  Lines expected;
  for (const char* error : kErrorsOfAMoment) {
    for (int times = 1; times <= 4; ++times) {
      const FileFaults faults(Failing(times, error));
      EXPECT_TRUE(ExportNote().ok()) << times << error;
      EXPECT_TRUE(file_system::Delete(PathOf(L"00000902.dxl"))) << times << error;
      const Lines retries = RetryLines(times);
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
    Lines expected = RetryLines(4);
    expected.push_back(GetParam().finalLine);
    EXPECT_EQ(LogLines(), expected) << error;
    ExpectNoFile();
  }
}

INSTANTIATE_TEST_SUITE_P(
    Operations, RetriedOperation,
    testing::Values(Retried{"Delete", "delete temp.tmp", "delete DXL temporary file", 260,
                            "#WARNING# - Unable to delete DXL temporary file (tried retry)"},
                    Retried{"Move", "move 00000902.dxl", "move DXL file into place", 264,
                            "#WARNING# - Unable to move DXL file into place (tried retry)"}),
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
  EXPECT_TRUE(Exists(PathOf(L"temp.tmp")));
}

TEST_F(FilePlacementFaultTest, AclMeetsTheSameFaults) {
  const FileFaults faults("write temp.tmp 1 diskFull; move acl.dxl 1-5 accessDenied");
  EXPECT_EQ(ExportAclToFile(exporter_, database_).code(), 270);
  EXPECT_EQ(ExportAclToFile(exporter_, database_).code(), 264);
  EXPECT_FALSE(Exists(PathOf(L"acl.dxl")));
}

}  // namespace
}  // namespace larkspan
