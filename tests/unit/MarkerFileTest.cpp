#include "report/MarkerFile.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"
#include "tests/support/ParameterName.h"
#include "tests/support/PauseRecorder.h"

namespace larkspan {
namespace {

class MarkerFileTest : public OutputFolderTest {
 protected:
  // Removes a folder that stands in the way of the file.
  void ClearTheWay() { RemoveDirectoryW(marker_.c_str()); }

  const std::wstring marker_ = PathOf(L"marker.txt");
  const PauseRecorder recorder_;
};

std::string EightDigits(std::uint32_t number) {
  char text[9];
  std::snprintf(text, sizeof text, "%08X", static_cast<unsigned int>(number));
  return text;
}

Lines RetryLines(int count) {
  Lines lines;
  for (int made = 1; made <= count; ++made) {
    lines.push_back("#DEBUG# - Retry WriteMarkerFile (Permission denied): " + std::to_string(made));
  }
  return lines;
}

struct Written {
  std::uint32_t noteId;
  const char* bytes;
};

class MarkerFileWritten : public MarkerFileTest, public testing::WithParamInterface<Written> {};

TEST_P(MarkerFileWritten, HoldsEightUpperCaseDigitsAndALineEndAndIsReadBack) {
  EXPECT_TRUE(WriteMarkerFile(GetParam().noteId));
  EXPECT_EQ(ReadBytes(marker_), GetParam().bytes);
  EXPECT_EQ(ReadMarkerFile(), GetParam().noteId);
}

INSTANTIATE_TEST_SUITE_P(NoteIds, MarkerFileWritten,
                         testing::Values(Written{0x12F6, "000012F6\r\n"},
                                         Written{0xABCDEF01, "ABCDEF01\r\n"},
                                         Written{0, "00000000\r\n"},
                                         Written{0xFFFFFFFE, "FFFFFFFE\r\n"}));

TEST_F(MarkerFileTest, WritingReplacesLongerContent) {
  WriteBytes(marker_, "00000001\r\n00000002\r\n00000003\r\n");
  EXPECT_TRUE(WriteMarkerFile(0x12F6));
  EXPECT_EQ(ReadBytes(marker_), "000012F6\r\n");
}

TEST_F(MarkerFileTest, WritingIsNotLogged) {
  WriteMarkerFile(0x12F6);
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(MarkerFileTest, FolderInTheWayIsTriedThirtyTimesASecondApart) {
  MakeFolder(marker_);
  EXPECT_FALSE(WriteMarkerFile(0x12F6));
  EXPECT_EQ(recorder_.pauses(), std::vector<long long>(29, 1000));
}

TEST_F(MarkerFileTest, EveryRetryIsADebugLineAndTheLastFailureAnErrorLine) {
  MakeFolder(marker_);
  WriteMarkerFile(0x12F6);
  Lines expected = RetryLines(29);
  expected.push_back("#ERROR# - WriteMarkerFile failed (Permission denied)");
  EXPECT_EQ(LogLines(), expected);
}

TEST_F(MarkerFileTest, OnlyTheLastFailureIsLoggedWithoutDebug) {
  LeaveOutDebugLines();
  MakeFolder(marker_);
  WriteMarkerFile(0x12F6);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - WriteMarkerFile failed (Permission denied)"});
}

TEST_F(MarkerFileTest, MissingOutputFolderIsTriedThirtyTimes) {
  UseOutputFolder(L"missing");
  EXPECT_FALSE(WriteMarkerFile(0x12F6));
  EXPECT_EQ(recorder_.pauses().size(), 29u);
}

TEST_F(MarkerFileTest, WritingSucceedsAtALaterAttemptUpToTheLast) {
  for (const int blocked : {1, 3, 29}) {
    WriteBytes(PathOf(L"log.txt"), "");
    MakeFolder(marker_);
    int pauses = 0;
    const PauseRecorder recorder([&] {
      if (++pauses == blocked) ClearTheWay();
    });
    EXPECT_TRUE(WriteMarkerFile(0x12F6));
    EXPECT_EQ(ReadBytes(marker_), "000012F6\r\n");
    EXPECT_EQ(LogLines(), RetryLines(blocked));
    DeleteMarkerFile();
  }
}

TEST_F(MarkerFileTest, FileThatAnotherProgramHoldsIsTriedAgain) {
  HANDLE held = CreateFileW(marker_.c_str(), GENERIC_READ, 0, nullptr, CREATE_ALWAYS,
                            FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(held, INVALID_HANDLE_VALUE);
  PauseRecorder recorder([&] { CloseHandle(held); });
  EXPECT_TRUE(WriteMarkerFile(0x12F6));
  EXPECT_EQ(LogLines(), RetryLines(1));
}

struct MarkerText {
  const char* name;
  const char* bytes;
  std::uint32_t value;
};

class MarkerFileContent : public MarkerFileTest, public testing::WithParamInterface<MarkerText> {};

TEST_P(MarkerFileContent, ReadsAs) {
  WriteBytes(marker_, GetParam().bytes);
  EXPECT_EQ(ReadMarkerFile(), GetParam().value);
}

TEST_P(MarkerFileContent, IsLoggedAsItIsRead) {
  WriteBytes(marker_, GetParam().bytes);
  ReadMarkerFile();
  EXPECT_EQ(LogLines(),
            Lines{"#DEBUG# - ReadMarkerFile returned " + EightDigits(GetParam().value)});
}

INSTANTIATE_TEST_SUITE_P(Contents, MarkerFileContent,
                         testing::Values(MarkerText{"AsWritten", "000012F6\r\n", 0x12F6},
                                         MarkerText{"Zero", "00000000\r\n", 0},
                                         MarkerText{"LowerCase", "ffff", 0x0000FFFF},
                                         MarkerText{"WithoutLineEnd", "000012F6", 0x12F6},
                                         MarkerText{"WithLineFeedOnly", "000012F6\n", 0x12F6},
                                         MarkerText{"FirstLineOnly", "00000001\r\n00000002\r\n", 1},
                                         MarkerText{"TextBehindNumber", "12F6 note", 0x12F6},
                                         MarkerText{"TopBit", "80000004\r\n", 0x80000004},
                                         MarkerText{"Complete", "FFFFFFFF\r\n", 0xFFFFFFFF},
                                         MarkerText{"Empty", "", 0xFFFFFFFF},
                                         MarkerText{"LineEndOnly", "\r\n", 0xFFFFFFFF},
                                         MarkerText{"NoNumber", "note\r\n", 0xFFFFFFFF},
                                         MarkerText{"NoNumberBeforeNumber", "- 12F6\r\n",
                                                    0xFFFFFFFF}),
                         kNameOf);

TEST_F(MarkerFileTest, MissingFileMeansComplete) { EXPECT_EQ(ReadMarkerFile(), 0xFFFFFFFF); }

TEST_F(MarkerFileTest, ReadingAMissingFileIsLogged) {
  ReadMarkerFile();
  EXPECT_EQ(LogLines(), Lines{"#DEBUG# - No marker file found"});
}

TEST_F(MarkerFileTest, ReadingLeavesTheFile) {
  WriteBytes(marker_, "000012F6\r\n");
  ReadMarkerFile();
  EXPECT_EQ(ReadBytes(marker_), "000012F6\r\n");
}

TEST_F(MarkerFileTest, DeletingRemovesTheFile) {
  WriteMarkerFile(0x12F6);
  DeleteMarkerFile();
  EXPECT_FALSE(Exists(marker_));
}

TEST_F(MarkerFileTest, DeletingIsNotLogged) {
  WriteMarkerFile(0x12F6);
  DeleteMarkerFile();
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(MarkerFileTest, DeletingAMissingFileIsSilent) {
  DeleteMarkerFile();
  EXPECT_EQ(LogLines(), Lines());
}

}  // namespace
}  // namespace larkspan
