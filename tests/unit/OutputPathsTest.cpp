#include "base/OutputPaths.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace larkspan {
namespace {

TEST(OutputPathsTest, FolderAndNameAreJoinedAsTheyStand) {
  EXPECT_EQ(output::Join(L"C:\\out", L"\\log.txt"), L"C:\\out\\log.txt");
}

TEST(OutputPathsTest, BackslashAtTheEndOfTheFolderIsLeft) {
  EXPECT_EQ(output::Join(L"C:\\out\\", L"\\log.txt"), L"C:\\out\\\\log.txt");
}

TEST(OutputPathsTest, WithoutAFolderTheNameStandsAlone) {
  EXPECT_EQ(output::Join(L"", output::kLog), L"\\log.txt");
}

TEST(OutputPathsTest, FilesHaveTheirNames) {
  EXPECT_EQ(std::wstring(output::kLog), L"\\log.txt");
  EXPECT_EQ(std::wstring(output::kAudit), L"\\audit.txt");
  EXPECT_EQ(std::wstring(output::kMarker), L"\\marker.txt");
  EXPECT_EQ(std::wstring(output::kIdTable), L"\\idtable.txt");
  EXPECT_EQ(std::wstring(output::kUnidIndex), L"\\unidindex.txt");
  EXPECT_EQ(std::wstring(output::kAcl), L"\\acl.dxl");
  EXPECT_EQ(std::wstring(output::kTemporary), L"\\temp.tmp");
}

TEST(OutputPathsTest, SubfoldersStandInTheOrderOfTheirCreation) {
  EXPECT_EQ(
      std::vector<std::wstring>(output::kSubfolders.begin(), output::kSubfolders.end()),
      (std::vector<std::wstring>{L"\\data", L"\\design", L"\\design2", L"\\profile", L"\\views"}));
}

TEST(OutputPathsTest, NoteFileStandsInItsSubfolder) {
  EXPECT_EQ(output::NoteFile(output::kDataFolder, 0x12F6), L"\\data\\000012F6.dxl");
}

TEST(OutputPathsTest, NoteFileWithoutSubfolderStandsInTheOutputFolder) {
  EXPECT_EQ(output::NoteFile(L"", 0xABCDEF01), L"\\ABCDEF01.dxl");
}

TEST(OutputPathsTest, NoteFileOfTheSmallestNumberHasEightDigits) {
  EXPECT_EQ(output::NoteFile(output::kRawDesignFolder, 0), L"\\design2\\00000000.dxl");
}

}  // namespace
}  // namespace larkspan
