#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "export/OutputFolder.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"

namespace larkspan {
namespace {

class OutputSubfoldersTest : public OutputFolderTest {
 protected:
  void Create(bool archive) {
    Settings settings = ProcessSettings();
    settings.archive = archive;
    SetProcessSettings(std::move(settings));
    CreateOutputSubfolders();
  }

  // Those of an archive's subfolders that exist.
  std::vector<std::wstring> Subfolders() const {
    std::vector<std::wstring> found;
    for (const wchar_t* name : {L"data", L"design", L"design2", L"profile", L"views"}) {
      if (Exists(PathOf(name))) found.push_back(name);
    }
    return found;
  }
};

const std::vector<std::wstring> kAll = {L"data", L"design", L"design2", L"profile", L"views"};

TEST_F(OutputSubfoldersTest, ArchiveGetsAllOfThem) {
  Create(true);
  EXPECT_EQ(Subfolders(), kAll);
}

TEST_F(OutputSubfoldersTest, OtherExportsGetNone) {
  Create(false);
  EXPECT_EQ(Subfolders(), std::vector<std::wstring>());
}

TEST_F(OutputSubfoldersTest, FolderThatExistsKeepsWhatItHolds) {
  MakeFolder(PathOf(L"data"));
  WriteBytes(PathOf(L"data\\0000002A.dxl"), "old");
  Create(true);
  EXPECT_EQ(ReadBytes(PathOf(L"data\\0000002A.dxl")), "old");
}

TEST_F(OutputSubfoldersTest, FolderThatExistsDoesNotKeepTheOthersFromBeingMade) {
  MakeFolder(PathOf(L"data"));
  Create(true);
  EXPECT_EQ(Subfolders(), kAll);
}

TEST_F(OutputSubfoldersTest, FileInTheWayOfOneIsSilent) {
  WriteBytes(PathOf(L"design"), "file");
  Create(true);
  EXPECT_EQ(ReadBytes(PathOf(L"design")), "file");
  EXPECT_TRUE(Exists(PathOf(L"views")));
  EXPECT_EQ(LogLines(), Lines());
}

}  // namespace
}  // namespace larkspan
