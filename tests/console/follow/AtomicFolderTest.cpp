#include "console/follow/AtomicFolder.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>

#include "tests/support/FileBytes.h"
#include "tests/support/PauseRecorder.h"
#include "tests/support/SystemProcess.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

class AtomicFolderTest : public ::testing::Test {
 protected:
  void MakeFolders(const std::vector<std::wstring>& names) const {
    for (const std::wstring& name : names) MakeFolder(folder_ / (L"\\" + name));
  }

  // An attempt with one file in it.
  std::wstring MakeAttempt() const {
    MakeFolders({L"orders.attempt-1"});
    WriteBytes(folder_ / L"\\orders.attempt-1\\audit.txt", "whole");
    return folder_ / L"\\orders.attempt-1";
  }

  bool Place() const {
    return PlaceAttempt(attempt_, out_, [] { return false; });
  }

  bool IsPlaced() const { return Exists(out_ + L"\\audit.txt") && !Exists(attempt_); }

  TempFolder folder_;
  std::wstring out_ = folder_ / L"\\orders";
  std::wstring attempt_ = out_ + L".attempt-1";
};

TEST_F(AtomicFolderTest, TheFirstAttemptIsOne) {
  EXPECT_EQ(NextAttempt(out_), out_ + L".attempt-1");
  EXPECT_EQ(LastAttempt(out_), std::nullopt);
}

TEST_F(AtomicFolderTest, TheNextAttemptIsBehindTheLastOneWhateverGapsThereAre) {
  MakeFolders({L"orders.attempt-1", L"orders.attempt-9", L"orders.attempt-10"});
  EXPECT_EQ(NextAttempt(out_), out_ + L".attempt-11");
  EXPECT_EQ(LastAttempt(out_), out_ + L".attempt-10");
}

TEST_F(AtomicFolderTest, NamesThatLookAlikeAreNoAttempts) {
  MakeFolders({L"orders.attempt-", L"orders.attempt-x", L"orders.attempt-3x", L"orders.attempt--4",
               L"orders.attempt-5 (copy)", L"orders", L"borders.attempt-7",
               L"orders.attempt-8.attempt-", L"orders.attempt-99999999999"});
  EXPECT_EQ(NextAttempt(out_), out_ + L".attempt-1");
  EXPECT_EQ(LastAttempt(out_), std::nullopt);
}

// That folder is an attempt of another export, "orders.attempt-8".
TEST_F(AtomicFolderTest, AnAttemptOfAnAttemptIsNoneOfThis) {
  MakeFolders({L"orders.attempt-2", L"orders.attempt-8.attempt-5"});
  EXPECT_EQ(NextAttempt(out_), out_ + L".attempt-3");
  EXPECT_EQ(LastAttempt(out_), out_ + L".attempt-2");
}

TEST_F(AtomicFolderTest, ANumberIsTakenAsItStands) {
  MakeFolders({L"orders.attempt-007"});
  EXPECT_EQ(LastAttempt(out_), std::nullopt);
}

TEST_F(AtomicFolderTest, AFileOfThatNameTakesTheNumberButIsNoAttempt) {
  WriteBytes(folder_ / L"\\orders.attempt-1", "");
  EXPECT_EQ(NextAttempt(out_), out_ + L".attempt-2");
}

TEST_F(AtomicFolderTest, LetterCaseAndOtherLettersMatchAsTheSystemDoes) {
  const std::wstring out = folder_ / L"\\Aufträge 日本";
  MakeFolders({L"Aufträge 日本.attempt-4"});
  EXPECT_EQ(NextAttempt(out), out + L".attempt-5");
}

TEST_F(AtomicFolderTest, AnAttemptGetsItsName) {
  MakeAttempt();
  PauseRecorder recorder;
  EXPECT_TRUE(Place());
  EXPECT_TRUE(IsPlaced());
  EXPECT_TRUE(recorder.pauses().empty());
}

TEST_F(AtomicFolderTest, AnEmptyFolderGivesWay) {
  MakeAttempt();
  MakeFolders({L"orders"});
  EXPECT_TRUE(Place());
  EXPECT_TRUE(IsPlaced());
}

TEST_F(AtomicFolderTest, AFolderThatHoldsSomethingIsNeverReplaced) {
  MakeAttempt();
  MakeFolders({L"orders"});
  WriteBytes(out_ + L"\\mine.txt", "mine");
  PauseRecorder recorder;
  EXPECT_FALSE(Place());
  EXPECT_EQ(ReadBytes(out_ + L"\\mine.txt"), "mine");
  EXPECT_TRUE(Exists(attempt_ + L"\\audit.txt"));
}

TEST_F(AtomicFolderTest, AFileOfThatNameIsNeverReplaced) {
  MakeAttempt();
  WriteBytes(out_, "mine");
  PauseRecorder recorder;
  EXPECT_FALSE(Place());
  EXPECT_EQ(ReadBytes(out_), "mine");
}

TEST_F(AtomicFolderTest, TriesForThirtySeconds) {
  MakeAttempt();
  WriteBytes(out_, "mine");
  PauseRecorder recorder;
  Place();
  long long all = 0;
  for (const long long pause : recorder.pauses()) all += pause;
  EXPECT_GE(all, 29'000);
  EXPECT_LE(all, 31'000);
}

TEST_F(AtomicFolderTest, AHeldNameIsTriedUntilItIsReleased) {
  MakeAttempt();
  WriteBytes(out_, "in the way for a while");
  int pauses = 0;
  PauseRecorder recorder([&] {
    if (++pauses == 5) std::filesystem::remove(out_);
  });
  EXPECT_TRUE(Place());
  EXPECT_TRUE(IsPlaced());
  EXPECT_EQ(recorder.pauses().size(), 5u);
}

// A scanner that reads a file of the attempt keeps the folder from getting another name.
TEST_F(AtomicFolderTest, AnAttemptThatIsHeldOpenIsTriedUntilItIsReleased) {
  MakeAttempt();
  testing::UniqueSystemHandle held(CreateFileW(attempt_.c_str(), FILE_LIST_DIRECTORY, 0, nullptr,
                                               OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  ASSERT_NE(held.get(), INVALID_HANDLE_VALUE);
  int pauses = 0;
  PauseRecorder recorder([&] {
    if (++pauses == 3) held.reset();
  });
  EXPECT_TRUE(Place());
  EXPECT_TRUE(IsPlaced());
  EXPECT_EQ(recorder.pauses().size(), 3u);
}

TEST_F(AtomicFolderTest, WhoGivesUpEndsTheTrying) {
  MakeAttempt();
  WriteBytes(out_, "mine");
  PauseRecorder recorder;
  int asked = 0;
  EXPECT_FALSE(PlaceAttempt(attempt_, out_, [&] { return ++asked > 4; }));
  EXPECT_EQ(recorder.pauses().size(), 4u);
}

}  // namespace
}  // namespace larkspan::console
