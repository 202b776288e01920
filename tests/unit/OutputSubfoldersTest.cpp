#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "base/Utf8.h"
#include "export/OutputFolder.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputFolderTest.h"

namespace larkspan {
namespace {

class OutputSubfoldersTest : public OutputFolderTest {
 protected:
  static void Create(bool archive) {
    SetArchive(archive);
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

TEST_F(OutputSubfoldersTest, FolderThatCannotBeMadeIsSilentAndTheOthersAreMade) {
  for (const std::wstring& refused : kAll) {
    SCOPED_TRACE(WideToUtf8(refused));
    for (const std::wstring& name : kAll) RemoveDirectoryW(PathOf(name).c_str());
    const FileFaults faults("folder " + WideToUtf8(refused) + " 1 accessDenied");
    Create(true);
    std::vector<std::wstring> others = kAll;
    std::erase(others, refused);
    EXPECT_EQ(Subfolders(), others);
  }
  EXPECT_EQ(LogLines(), Lines());
}

TEST_F(OutputSubfoldersTest, FoldersAreMadeInAFixedOrder) {
  const FileFaults files;
  Create(true);
  EXPECT_EQ(files.Operations(), (Lines{"folder data", "folder design", "folder design2",
                                       "folder profile", "folder views"}));
}

class LeftStagesTest : public OutputFolderTest {};

TEST_F(LeftStagesTest, StagesOfPropertiesAndViewsAreDeleted) {
  MakeFolder(PathOf(L"views"));
  for (const wchar_t* name :
       {L"db.dxl.new", L"views\\0000011A.xml.new", L"views\\0000011E.xml.new"}) {
    WriteBytes(PathOf(name), "half");
  }
  DeleteLeftStages();
  EXPECT_FALSE(Exists(PathOf(L"db.dxl.new")));
  EXPECT_FALSE(Exists(PathOf(L"views\\0000011A.xml.new")));
  EXPECT_FALSE(Exists(PathOf(L"views\\0000011E.xml.new")));
}

TEST_F(LeftStagesTest, OtherFilesStay) {
  MakeFolder(PathOf(L"views"));
  for (const wchar_t* name : {L"db.dxl", L"views\\0000011A.xml", L"views\\a.new", L"acl.dxl.new"}) {
    WriteBytes(PathOf(name), "whole");
  }
  DeleteLeftStages();
  for (const wchar_t* name : {L"db.dxl", L"views\\0000011A.xml", L"views\\a.new", L"acl.dxl.new"}) {
    EXPECT_EQ(ReadBytes(PathOf(name)), "whole");
  }
}

TEST_F(LeftStagesTest, MissingViewsFolderIsNoFault) {
  DeleteLeftStages();
  EXPECT_EQ(LogLines(), Lines());
}

}  // namespace
}  // namespace larkspan
