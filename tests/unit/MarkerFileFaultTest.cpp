// Marker files that the disk or another program refuses, at every stage of the writing.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "report/MarkerFile.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"
#include "tests/support/ParameterName.h"
#include "tests/support/PauseRecorder.h"

namespace larkspan {
namespace {

struct MarkerFault {
  const char* name;
  const char* operation;
  const char* error;
  const char* text;  // The C runtime's words for it.
};

class MarkerFileFault : public OutputFolderTest, public testing::WithParamInterface<MarkerFault> {
 protected:
  // The plan by which these calls fail.
  static std::string Failing(const std::string& calls) {
    return GetParam().operation + std::string(" marker.txt ") + calls + " " + GetParam().error;
  }

  static Lines RetryLines(int count) {
    Lines lines;
    for (int made = 1; made <= count; ++made) {
      lines.push_back("#DEBUG# - Retry WriteMarkerFile (" + std::string(GetParam().text) +
                      "): " + std::to_string(made));
    }
    return lines;
  }

  const std::wstring marker_ = PathOf(L"marker.txt");
  const PauseRecorder recorder_;
};

TEST_P(MarkerFileFault, IsTriedThirtyTimesASecondApart) {
  const FileFaults faults(Failing("*"));
  EXPECT_FALSE(WriteMarkerFile(0x12F6));
  EXPECT_EQ(recorder_.pauses(), std::vector<long long>(29, 1000));
  EXPECT_EQ(faults.OperationsAmong({"open marker.txt"}).size(), 30u);
}

TEST_P(MarkerFileFault, IsTwentyNineRetryLinesAndAnErrorLine) {
  const FileFaults faults(Failing("*"));
  WriteMarkerFile(0x12F6);
  Lines expected = RetryLines(29);
  expected.push_back("#ERROR# - WriteMarkerFile failed (" + std::string(GetParam().text) + ")");
  EXPECT_EQ(LogLines(), expected);
}

TEST_P(MarkerFileFault, LeavesNoMarkerAfterTheLastAttempt) {
  WriteBytes(marker_, "00000004\r\n");
  const FileFaults faults(Failing("*"));
  WriteMarkerFile(0x12F6);
  EXPECT_FALSE(Exists(marker_));
}

TEST_P(MarkerFileFault, ThatPassesCostsItsRetriesOnly) {
  for (const int failing : {1, 29}) {
    const FileFaults faults(Failing("1-" + std::to_string(failing)));
    EXPECT_TRUE(WriteMarkerFile(0x12F6));
    EXPECT_EQ(ReadBytes(marker_), "000012F6\r\n");
    EXPECT_EQ(LogLines(), RetryLines(failing));
    WriteBytes(PathOf(L"log.txt"), "");
  }
}

TEST_P(MarkerFileFault, LeavesNoMarkerThatIsHeldForAMomentAfterTheLastAttempt) {
  WriteBytes(marker_, "00000004\r\n");
  const FileFaults faults(Failing("*") + "; delete marker.txt 1-4 sharingViolation");
  WriteMarkerFile(0x12F6);
  EXPECT_FALSE(Exists(marker_));
  EXPECT_EQ(recorder_.pauses(), std::vector<long long>(29 + 4, 1000));
}

INSTANTIATE_TEST_SUITE_P(
    Faults, MarkerFileFault,
    testing::Values(
        MarkerFault{"HeldAtTheOpen", "open", "sharingViolation", "Permission denied"},
        MarkerFault{"NoFolderAtTheOpen", "open", "pathNotFound", "No such file or directory"},
        MarkerFault{"DiskFullAtTheOpen", "open", "diskFull", "No space left on device"},
        MarkerFault{"DiskFullAtTheWrite", "write", "diskFull", "No space left on device"},
        MarkerFault{"DiskFullAtTheClose", "close", "diskFull", "No space left on device"},
        MarkerFault{"RefusedAtTheClose", "close", "accessDenied", "Permission denied"}),
    kNameOf);

using MarkerFileRest = OutputFolderTest;

TEST_F(MarkerFileRest, MarkerThatTheSystemDoesNotReadNamesNoNote) {
  WriteBytes(PathOf(L"marker.txt"), "000012F6\r\n");
  const FileFaults faults("read marker.txt 1 accessDenied");
  EXPECT_EQ(ReadMarkerFile(), kNoNoteId);
}

TEST_F(MarkerFileRest, MarkerThatIsHeldForAMomentIsRead) {
  WriteBytes(PathOf(L"marker.txt"), "000012F6\r\n");
  const PauseRecorder recorder;
  const FileFaults faults("open marker.txt 1-4 sharingViolation");
  EXPECT_EQ(ReadMarkerFile(), 0x12F6u);
  EXPECT_EQ(recorder.pauses(), std::vector<long long>(4, 1000));
  EXPECT_EQ(LogLines(), Lines{"#DEBUG# - ReadMarkerFile returned 000012F6"});
}

TEST_F(MarkerFileRest, MarkerThatDoesNotOpenIsNoneAfterFiveAttempts) {
  WriteBytes(PathOf(L"marker.txt"), "000012F6\r\n");
  const PauseRecorder recorder;
  const FileFaults faults("open marker.txt * sharingViolation");
  EXPECT_EQ(ReadMarkerFile(), kNoNoteId);
  EXPECT_EQ(faults.OperationsAmong({"open marker.txt"}).size(), 5u);
  EXPECT_EQ(LogLines(), Lines{"#DEBUG# - No marker file found"});
}

TEST_F(MarkerFileRest, MarkerThatIsMissingIsNotWaitedFor) {
  const PauseRecorder recorder;
  EXPECT_EQ(ReadMarkerFile(), kNoNoteId);
  EXPECT_TRUE(recorder.pauses().empty());
}

TEST_F(MarkerFileRest, FolderOfThatNameIsNotWaitedFor) {
  MakeFolder(PathOf(L"marker.txt"));
  const PauseRecorder recorder;
  EXPECT_EQ(ReadMarkerFile(), kNoNoteId);
  DeleteLastMarkerFile();
  EXPECT_TRUE(recorder.pauses().empty());
}

TEST_F(MarkerFileRest, DeletingThatFailsIsSilent) {
  WriteBytes(PathOf(L"marker.txt"), "");
  const FileFaults faults("delete marker.txt 1 sharingViolation");
  DeleteMarkerFile();
  EXPECT_TRUE(Exists(PathOf(L"marker.txt")));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(MarkerFileRest, LastMarkerThatIsHeldForAMomentIsDeleted) {
  WriteBytes(PathOf(L"marker.txt"), "");
  const PauseRecorder recorder;
  const FileFaults faults("delete marker.txt 1-4 sharingViolation");
  DeleteLastMarkerFile();
  EXPECT_FALSE(Exists(PathOf(L"marker.txt")));
  EXPECT_EQ(recorder.pauses(), std::vector<long long>(4, 1000));
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(MarkerFileRest, LastMarkerThatStaysIsTriedFiveTimesInSilence) {
  WriteBytes(PathOf(L"marker.txt"), "");
  const PauseRecorder recorder;
  const FileFaults faults("delete marker.txt * sharingViolation");
  DeleteLastMarkerFile();
  EXPECT_EQ(faults.OperationsAmong({"delete marker.txt"}).size(), 5u);
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(MarkerFileRest, LastMarkerThatIsMissingIsNotWaitedFor) {
  const PauseRecorder recorder;
  DeleteLastMarkerFile();
  EXPECT_TRUE(recorder.pauses().empty());
}

}  // namespace
}  // namespace larkspan
