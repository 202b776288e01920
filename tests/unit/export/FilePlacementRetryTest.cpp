#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "tests/support/ReplacedEntryPoint.h"
#include "tests/unit/export/FilePlacementTest.h"

namespace larkspan {
namespace {

using FilePlacementRetryTest = FilePlacementTest;

const std::vector<long long> kFourPauses(4, 1000);

// A temporary file that another program holds open without sharing.
class HeldTemporaryFileTest : public FilePlacementTest {
 protected:
  HeldTemporaryFileTest() {
    WriteBytes(temporary_, "held");
    held_ = CreateFileW(temporary_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING,
                        FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_NE(held_, INVALID_HANDLE_VALUE);
  }
  ~HeldTemporaryFileTest() override { LetGo(); }

  void LetGo() {
    if (held_ != INVALID_HANDLE_VALUE) CloseHandle(held_);
    held_ = INVALID_HANDLE_VALUE;
  }

 private:
  HANDLE held_;
};

TEST_F(HeldTemporaryFileTest, IsGivenUpAfterFiveAttemptsASecondApart) {
  const PauseRecorder recorder;
  EXPECT_EQ(ExportNote().code(), 260);
  EXPECT_EQ(recorder.pauses(), kFourPauses);
}

TEST_F(HeldTemporaryFileTest, IsFourDebugLinesAndAWarning) {
  const PauseRecorder recorder;
  EXPECT_FALSE(ExportNote().ok());
  EXPECT_EQ(LogLines(), With(DeleteRetries(4), kNotDeleted));
}

TEST_F(HeldTemporaryFileTest, KeepsTheExportFromBeginning) {
  const PauseRecorder recorder;
  EXPECT_FALSE(ExportNote().ok());
  EXPECT_EQ(Calls("DXLExportNote"), 0);
}

TEST_F(HeldTemporaryFileTest, FailsTheAclInTheSameWay) {
  const PauseRecorder recorder;
  EXPECT_EQ(ExportAclToFile(exporter_, database_).code(), 260);
}

TEST_F(HeldTemporaryFileTest, ThatIsLetGoAtTheLastPauseIsDeleted) {
  int pauses = 0;
  const PauseRecorder recorder([&] {
    if (++pauses == 4) LetGo();
  });
  EXPECT_TRUE(ExportNote().ok());
  EXPECT_EQ(LogLines(), DeleteRetries(4));
}

TEST_F(HeldTemporaryFileTest, ThatIsLetGoAtTheFirstPauseIsDeletedAtTheSecondAttempt) {
  const PauseRecorder recorder([&] { LetGo(); });
  EXPECT_TRUE(ExportNote().ok());
  EXPECT_EQ(LogLines(), DeleteRetries(1));
}

TEST_F(FilePlacementRetryTest, FolderInPlaceOfTheTemporaryFileIsGivenUp) {
  MakeFolder(temporary_);
  const PauseRecorder recorder;
  EXPECT_EQ(ExportNote().code(), 260);
  EXPECT_EQ(recorder.pauses(), kFourPauses);
}

TEST_F(FilePlacementRetryTest, ExistingFinalNameIsGivenUpAfterFiveAttemptsASecondApart) {
  WriteBytes(final_, "old");
  const PauseRecorder recorder;
  EXPECT_EQ(ExportNote().code(), 264);
  EXPECT_EQ(recorder.pauses(), kFourPauses);
}

TEST_F(FilePlacementRetryTest, ExistingFinalNameIsFourDebugLinesAndAWarning) {
  WriteBytes(final_, "old");
  const PauseRecorder recorder;
  EXPECT_FALSE(ExportNote().ok());
  EXPECT_EQ(LogLines(), With(MoveRetries(4), kNotMoved));
}

TEST_F(FilePlacementRetryTest, ExistingFileIsLeftAndTheTemporaryFileDeleted) {
  WriteBytes(final_, "old");
  const PauseRecorder recorder;
  EXPECT_FALSE(ExportNote().ok());
  EXPECT_EQ(ReadBytes(final_), "old");
  EXPECT_FALSE(Exists(temporary_));
}

TEST_F(FilePlacementRetryTest, FinishedFileIsWholeWhileTheMoveIsTried) {
  WriteBytes(final_, "old");
  std::string seen;
  const PauseRecorder recorder([&] { seen = ReadBytes(temporary_); });
  EXPECT_FALSE(ExportNote().ok());
  EXPECT_TRUE(seen.ends_with("</document>\r\n"));
}

TEST_F(FilePlacementRetryTest, FinalNameThatBecomesFreeAtTheLastPauseIsTaken) {
  WriteBytes(final_, "old");
  int pauses = 0;
  const PauseRecorder recorder([&] {
    if (++pauses == 4) DeleteFileW(final_.c_str());
  });
  EXPECT_TRUE(ExportNote().ok());
  EXPECT_TRUE(ReadBytes(final_).ends_with("</document>\r\n"));
  EXPECT_EQ(LogLines(), MoveRetries(4));
}

TEST_F(FilePlacementRetryTest, FinalNameThatBecomesFreeAtTheFirstPauseIsTakenAtTheSecondAttempt) {
  WriteBytes(final_, "old");
  const PauseRecorder recorder([&] { DeleteFileW(final_.c_str()); });
  EXPECT_TRUE(ExportNote().ok());
  EXPECT_EQ(LogLines(), MoveRetries(1));
}

TEST_F(FilePlacementRetryTest, ExistingAclIsLeft) {
  WriteBytes(PathOf(L"acl.dxl"), "old");
  const PauseRecorder recorder;
  EXPECT_EQ(ExportAclToFile(exporter_, database_).code(), 264);
  EXPECT_EQ(ReadBytes(PathOf(L"acl.dxl")), "old");
}

TEST_F(FilePlacementRetryTest, MissingFinalFolderIsGivenUp) {
  const PauseRecorder recorder;
  EXPECT_EQ(ExportNote(L"\\data\\00000902.dxl").code(), 264);
  EXPECT_FALSE(Exists(temporary_));
}

TEST_F(FilePlacementRetryTest, FinalFolderThatAppearsIsUsed) {
  const PauseRecorder recorder([&] {
    if (!Exists(PathOf(L"data"))) MakeFolder(PathOf(L"data"));
  });
  EXPECT_TRUE(ExportNote(L"\\data\\00000902.dxl").ok());
  EXPECT_TRUE(Exists(PathOf(L"data\\00000902.dxl")));
}

notes_api::STATUS LARKSPAN_NOTES_CALL GiveNoChunk(notes_api::DHANDLE, notes_api::DxlOutputCallback,
                                                  notes_api::DHANDLE, void*) {
  return 0;
}

TEST_F(FilePlacementRetryTest, ExportWithoutAChunkHasNothingToMove) {
  const ReplacedEntryPoint replaced("DXLExportNote", GiveNoChunk);
  const PauseRecorder recorder;
  EXPECT_EQ(ExportNote().code(), 264);
  EXPECT_EQ(recorder.pauses(), kFourPauses);
  EXPECT_FALSE(Exists(final_));
}

}  // namespace
}  // namespace larkspan
