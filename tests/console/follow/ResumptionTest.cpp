// Where an export that was cut off goes on, by folders made by hand.
#include "console/follow/Resumption.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "console/follow/OutputFolder.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

using NoteNumber = std::optional<std::uint32_t>;

class ResumptionTest : public ::testing::Test {
 protected:
  ResumptionTest() {
    for (const wchar_t* name : {L"data", L"design", L"design2", L"profile", L"views"}) {
      MakeFolder(folder_ / (std::wstring(L"\\") + name));
    }
  }

  void Put(const std::wstring& name, const std::string& bytes = "<note/>") const {
    WriteBytes(PathOf(name), bytes);
  }
  std::wstring PathOf(const std::wstring& name) const { return folder_ / (L"\\" + name); }

  // A design note, two documents and a profile are listed.
  void PutList() const { Put(L"idtable.txt", "00000202\r\n00000902\r\n00000906\r\n0000090A\r\n"); }
  void PutFirstTwo() const {
    PutList();
    Put(L"design\\00000202.dxl");
    Put(L"design2\\00000202.dxl");
    Put(L"data\\00000902.dxl");
    Put(L"unidindex.txt", "");
  }

  Resumption Plan() const { return PlanResumption(folder_.path(), outcome_); }

  // Behind which note it goes on, how many are done, and which is tried again.
  void ExpectBehind(std::uint32_t note, std::uint32_t done, NoteNumber triedAgain = {},
                    bool isLost = false) const {
    const Resumption plan = Plan();
    EXPECT_FALSE(plan.isImpossible);
    ASSERT_TRUE(plan.first);
    EXPECT_EQ(plan.first->noteId, note);
    EXPECT_EQ(plan.first->noteIsLost, isLost);
    EXPECT_EQ(plan.done, done);
    EXPECT_EQ(plan.all, 4u);
    EXPECT_EQ(plan.triedAgain, triedAgain);
  }

  void ExpectBeginsAnew() const {
    const Resumption plan = Plan();
    EXPECT_FALSE(plan.isImpossible);
    EXPECT_FALSE(plan.first);
    EXPECT_FALSE(plan.triedAgain);
  }

  TempFolder folder_;
  console::Outcome outcome_;
};

TEST_F(ResumptionTest, WithoutAListTheExportBeginsAnew) { ExpectBeginsAnew(); }

TEST_F(ResumptionTest, WithAnEmptyListTheExportBeginsAnew) {
  Put(L"idtable.txt", "");
  ExpectBeginsAnew();
}

TEST_F(ResumptionTest, BeforeTheFirstNoteTheExportBeginsAnew) {
  PutList();
  ExpectBeginsAnew();
}

TEST_F(ResumptionTest, ATornListWithoutNotesBeginsAnew) {
  Put(L"idtable.txt", "00000202\r\n0000");
  ExpectBeginsAnew();
}

TEST_F(ResumptionTest, AListThatIsShorterThanWasToldBeginsAnew) {
  PutList();
  outcome_.progress.documents = 5;
  ExpectBeginsAnew();
}

TEST_F(ResumptionTest, AListThatIsNoMoreTheOneThatNotesWereExportedByIsImpossible) {
  PutFirstTwo();
  Put(L"idtable.txt", "00000202\r\nxyz\r\n");
  EXPECT_TRUE(Plan().isImpossible);
  PutList();
  outcome_.progress.documents = 5;
  EXPECT_TRUE(Plan().isImpossible);
}

TEST_F(ResumptionTest, InTheFirstNoteThatOneIsTriedAgain) {
  PutList();
  Put(L"marker.txt", "00000202\r\n");
  ExpectBehind(0x201, 0, 0x202);
}

TEST_F(ResumptionTest, InALaterNoteThatOneIsTriedAgain) {
  PutFirstTwo();
  Put(L"marker.txt", "00000906\r\n");
  ExpectBehind(0x902, 2, 0x906);
}

TEST_F(ResumptionTest, ANoteWithItsFileIsDone) {
  PutFirstTwo();
  Put(L"data\\00000906.dxl");
  Put(L"marker.txt", "00000906\r\n");
  ExpectBehind(0x906, 3);
}

TEST_F(ResumptionTest, AProfileWithItsFileIsDone) {
  PutFirstTwo();
  Put(L"profile\\0000090A.dxl");
  Put(L"marker.txt", "0000090A\r\n");
  ExpectBehind(0x90A, 4);
}

TEST_F(ResumptionTest, ADesignNoteWithoutItsRawCopyIsTriedAgain) {
  PutList();
  Put(L"design\\00000202.dxl");
  Put(L"marker.txt", "00000202\r\n");
  ExpectBehind(0x201, 0, 0x202);
}

TEST_F(ResumptionTest, ADesignNoteWithItsRawCopyIsDone) {
  PutList();
  Put(L"design\\00000202.dxl");
  Put(L"design2\\00000202.dxl");
  Put(L"marker.txt", "00000202\r\n");
  ExpectBehind(0x202, 1);
}

TEST_F(ResumptionTest, ANoteThatWasTriedAgainBeforeIsLost) {
  PutFirstTwo();
  Put(L"marker.txt", "00000906\r\n");
  outcome_.resumed = {{"2026-11-22T07:45:00Z", 0x906}};
  ExpectBehind(0x906, 3, {}, true);
}

TEST_F(ResumptionTest, AnotherNoteThatWasTriedAgainBeforeChangesNothing) {
  PutFirstTwo();
  Put(L"marker.txt", "00000906\r\n");
  outcome_.resumed = {{"2026-11-22T07:45:00Z", 0x902}, {"2026-11-22T07:46:00Z", std::nullopt}};
  ExpectBehind(0x902, 2, 0x906);
}

TEST_F(ResumptionTest, BetweenTwoNotesItGoesOnBehindTheLastFile) {
  PutFirstTwo();
  ExpectBehind(0x902, 2);
}

TEST_F(ResumptionTest, BetweenTwoNotesItGoesOnBehindTheLastLine) {
  PutFirstTwo();
  Put(L"log.txt", "#WARNING# - Major: Error opening note 00000906 (Note has been deleted)\r\n");
  ExpectBehind(0x906, 3);
}

TEST_F(ResumptionTest, BehindTheLastNoteNothingIsLeft) {
  PutFirstTwo();
  Put(L"data\\00000906.dxl");
  Put(L"profile\\0000090A.dxl");
  ExpectBehind(0x90A, 4);
}

TEST_F(ResumptionTest, AMarkerThatNamesNoListedNoteIsNone) {
  PutFirstTwo();
  for (const char* marker : {"", "FFFFFFFF\r\n", "00000000\r\n", "00000907\r\n", "zzz"}) {
    Put(L"marker.txt", marker);
    ExpectBehind(0x902, 2);
  }
}

TEST_F(ResumptionTest, OfAPlainExportTheFilesOfTheFolderCount) {
  outcome_.archive = false;
  PutList();
  Put(L"00000202.dxl");
  ExpectBehind(0x202, 1);
  Put(L"marker.txt", "00000902\r\n");
  ExpectBehind(0x202, 1, 0x902);
  Put(L"00000902.dxl");
  ExpectBehind(0x902, 2);
}

TEST_F(ResumptionTest, PreparingTakesMarkerAndHalfFilesAway) {
  PutFirstTwo();
  Put(L"marker.txt", "00000906\r\n");
  Put(L"temp.tmp", "half");
  PrepareResumption(folder_.path(), Plan());
  EXPECT_FALSE(Exists(PathOf(L"marker.txt")));
  EXPECT_FALSE(Exists(PathOf(L"temp.tmp")));
  for (const wchar_t* name : {L"idtable.txt", L"unidindex.txt", L"data\\00000902.dxl",
                              L"design\\00000202.dxl", L"design2\\00000202.dxl"}) {
    EXPECT_TRUE(Exists(PathOf(name)));
  }
}

TEST_F(ResumptionTest, PreparingMovesTheDesignFileOfANoteThatIsTriedAgainOutOfTheWay) {
  PutList();
  Put(L"design\\00000202.dxl");
  Put(L"marker.txt", "00000202\r\n");
  PrepareResumption(folder_.path(), Plan());
  EXPECT_FALSE(Exists(PathOf(L"design\\00000202.dxl")));
}

// Whatever hinders the next run before it: its file is not put back, so it is not finished.
TEST_F(ResumptionTest, ADesignNoteThatWasToBeTriedAgainStillIs) {
  PutList();
  Put(L"unidindex.txt");
  Put(L"design\\00000202.dxl");
  Put(L"marker.txt", "00000202\r\n");
  PrepareResumption(folder_.path(), Plan());
  SettleDesignFiles(folder_.path());
  ExpectBehind(0x201, 0);
}

// It gets another one when it is opened again.
TEST_F(ResumptionTest, PreparingDropsTheIndexLineOfANoteThatIsTriedAgain) {
  const std::string before = "00000902,C12583D0004D1A2BA894132600000902\r\n";
  PutFirstTwo();
  Put(L"marker.txt", "00000906\r\n");
  Put(L"unidindex.txt", before + "00000906,C12583D0004D1A2BA894132600000906\r\n");
  PrepareResumption(folder_.path(), Plan());
  EXPECT_EQ(ReadBytes(PathOf(L"unidindex.txt")), before);
}

TEST_F(ResumptionTest, PreparingANewBeginningLeavesNothingOfTheOldOne) {
  for (const wchar_t* name : {L"idtable.txt", L"unidindex.txt", L"db.dxl", L"db.dxl.new",
                              L"acl.dxl", L"log.txt", L"audit.txt", L"views\\0000012E.xml"}) {
    Put(name);
  }
  PrepareResumption(folder_.path(), Resumption());
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_.path())) {
    EXPECT_TRUE(entry.is_directory()) << entry.path();
  }
}

}  // namespace
}  // namespace larkspan::console
