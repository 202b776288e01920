#include "console/batch/BatchFolders.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "console/account/Outcome.h"
#include "console/batch/SafeName.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

ListedDatabase On(const std::string& server, const std::string& path) {
  return {server, path, "", false};
}

class BatchFoldersTest : public ::testing::Test {
 protected:
  // Relative to the root.
  std::vector<std::wstring> Choose(const std::vector<ListedDatabase>& databases) const {
    std::vector<std::wstring> folders = ChooseFolders(root_, databases);
    for (std::wstring& folder : folders) {
      EXPECT_TRUE(folder.starts_with(root_ + L"\\"));
      folder.erase(0, root_.size() + 1);
    }
    return folders;
  }

  void MakeExport(const std::wstring& name, const ListedDatabase& database,
                  const std::wstring& within = L"") const {
    std::filesystem::create_directories(root_ + L"\\" + name + within);
    Outcome outcome;
    outcome.server = database.server;
    outcome.path = database.path;
    ASSERT_TRUE(WriteOutcome(root_ + L"\\" + name + within, outcome));
  }

  using Names = std::vector<std::wstring>;
  const TempFolder folder_;
  const std::wstring root_ = folder_.path();
};

TEST_F(BatchFoldersTest, DatabasesThatDoNotMeetHavePlainNames) {
  EXPECT_EQ(Choose({On("Mill", "a.nsf"), On("Mill", "d\\a.nsf"), On("", "a.nsf")}),
            (Names{L"Mill\\a.nsf", L"Mill\\d\\a.nsf", L"local\\a.nsf"}));
}

TEST_F(BatchFoldersTest, TheSecondOfTwoThatMeetHasASum) {
  const ListedDatabase upper = On("Mill", "A.nsf");
  const ListedDatabase colon = On("Mill", "a:b.nsf");
  EXPECT_EQ(Choose({On("Mill", "a.nsf"), upper, On("Mill", "a?b.nsf"), colon}),
            (Names{L"Mill\\a.nsf", FolderNameWithSum(upper), L"Mill\\a_b.nsf",
                   FolderNameWithSum(colon)}));
}

TEST_F(BatchFoldersTest, LettersBeyondAsciiMeetInTheirOtherCaseToo) {
  const ListedDatabase lower = On("", "\xC3\xA4.nsf");
  EXPECT_EQ(Choose({On("", "\xC3\x84.nsf"), lower})[1], FolderNameWithSum(lower));
}

TEST_F(BatchFoldersTest, NoFolderIsAboveAnother) {
  const ListedDatabase below = On("Mill", "archive\\a.nsf");
  const ListedDatabase above = On("Mill", "ARCHIVE");
  EXPECT_EQ(Choose({On("Mill", "archive"), below}),
            (Names{L"Mill\\archive", FolderNameWithSum(below)}));
  EXPECT_EQ(Choose({below, above}), (Names{L"Mill\\archive\\a.nsf", FolderNameWithSum(above)}));
}

TEST_F(BatchFoldersTest, ADatabaseKeepsTheFolderOfAnEarlierRun) {
  const ListedDatabase upper = On("Mill", "A.nsf");
  const ListedDatabase lower = On("Mill", "a.nsf");
  MakeExport(L"Mill\\A.nsf", upper);
  EXPECT_EQ(Choose({lower, upper}), (Names{FolderNameWithSum(lower), L"Mill\\A.nsf"}));
}

TEST_F(BatchFoldersTest, ItKeepsThatOfASumToo) {
  const ListedDatabase upper = On("Mill", "A.nsf");
  MakeExport(FolderNameWithSum(upper), upper);
  EXPECT_EQ(Choose({upper}), (Names{FolderNameWithSum(upper)}));
}

TEST_F(BatchFoldersTest, ItKeepsThatOfAnAttemptAndOfASealedExport) {
  const ListedDatabase cutOff = On("Mill", "a.nsf");
  const ListedDatabase sealed = On("Mill", "b.nsf");
  MakeExport(L"Mill\\a.nsf.attempt-2", cutOff);
  MakeExport(L"Mill\\b.nsf", sealed, L"\\data");
  WriteBytes(root_ + L"\\Mill\\b.nsf\\bagit.txt", "BagIt-Version: 1.0\n");
  EXPECT_EQ(Choose({On("Mill", "A.NSF"), cutOff, sealed}),
            (Names{FolderNameWithSum(On("Mill", "A.NSF")), L"Mill\\a.nsf", L"Mill\\b.nsf"}));
}

TEST_F(BatchFoldersTest, AFolderThatHoldsSomethingElseIsNotTaken) {
  const ListedDatabase database = On("Mill", "a.nsf");
  std::filesystem::create_directories(root_ + L"\\Mill\\a.nsf\\stuff");
  EXPECT_EQ(Choose({database}), (Names{FolderNameWithSum(database)}));
}

TEST_F(BatchFoldersTest, NothingGoesIntoTheFolderOfAnotherExport) {
  const ListedDatabase below = On("Mill", "archive\\data\\a.nsf");
  MakeExport(L"Mill\\archive", On("Mill", "archive"));
  EXPECT_EQ(Choose({below}), (Names{FolderNameWithSum(below)}));
}

TEST_F(BatchFoldersTest, ALineThatNamesAFolderTakesNoName) {
  EXPECT_EQ(ChooseFolders(root_, {{"Mill", "m", "", true}, On("Mill", "m\\a.nsf")}),
            (Names{L"", root_ + L"\\Mill\\m\\a.nsf"}));
}

TEST_F(BatchFoldersTest, AFileTakesANameToo) {
  std::filesystem::create_directories(root_ + L"\\Mill");
  WriteBytes(root_ + L"\\Mill\\a.nsf", "mine");
  EXPECT_EQ(Choose({On("Mill", "a.nsf")}), (Names{FolderNameWithSum(On("Mill", "a.nsf"))}));
}

TEST_F(BatchFoldersTest, AServerInAnotherCaseKeepsItsFolders) {
  MakeExport(L"Mill\\a.nsf", On("Mill", "a.nsf"));
  EXPECT_EQ(Choose({On("MILL", "a.nsf")}), (Names{L"MILL\\a.nsf"}));
}

TEST_F(BatchFoldersTest, AnEmptyFolderIsFree) {
  std::filesystem::create_directories(root_ + L"\\Mill\\a.nsf");
  EXPECT_EQ(Choose({On("Mill", "a.nsf")}), (Names{L"Mill\\a.nsf"}));
}

TEST_F(BatchFoldersTest, ANameOfAnAttemptOrALongOneHasASum) {
  const ListedDatabase attempt = On("", "a.nsf.attempt-1");
  const ListedDatabase deep = On("", std::string(90, 'a') + "\\" + std::string(90, 'b'));
  EXPECT_EQ(Choose({attempt, deep}), (Names{FolderNameWithSum(attempt), FolderNameWithSum(deep)}));
  EXPECT_LT(FolderNameWithSum(deep).size(), 70u);
}

}  // namespace
}  // namespace larkspan::console
