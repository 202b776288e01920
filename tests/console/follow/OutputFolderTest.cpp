#include "console/follow/OutputFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "base/Utf8.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

class ConsoleFolderTest : public ::testing::Test {
 protected:
  void Put(const std::wstring& name, const std::string& bytes) const {
    WriteBytes(PathOf(name), bytes);
  }
  std::wstring PathOf(const std::wstring& name) const { return folder_ / (L"\\" + name); }

  bool Refuses(const std::wstring& folder, const std::string& why) const {
    return MakeEmptyFolder(folder).ends_with(why);
  }

  TempFolder folder_;
};

TEST(WholePathTest, HasADriveAndNoBackslashAtItsEnd) {
  const std::wstring here = std::filesystem::current_path().wstring();
  EXPECT_EQ(WholePath("C:\\export\\"), L"C:\\export");
  EXPECT_EQ(WholePath("C:/export//x\\\\"), L"C:\\export\\x");
  EXPECT_EQ(WholePath("C:\\a\\..\\b\\."), L"C:\\b");
  EXPECT_EQ(WholePath("C:\\"), L"C:\\");
  EXPECT_EQ(WholePath("\xC3\xBC \xE6\x97\xA5"), here + L"\\ü 日");
}

TEST_F(ConsoleFolderTest, IsMadeWithThoseAboveItAndHoldsNothing) {
  EXPECT_EQ(MakeEmptyFolder(PathOf(L"ä\\日本")), "");
  EXPECT_TRUE(IsEmptyFolder(PathOf(L"ä\\日本")));
}

TEST_F(ConsoleFolderTest, MayBeThereWhenItIsEmpty) {
  EXPECT_EQ(MakeEmptyFolder(folder_.path()), "");
}

TEST_F(ConsoleFolderTest, HoldsNothingElse) {
  Put(L"desktop.ini", "");
  EXPECT_TRUE(Refuses(folder_.path(), "' is not empty"));
  MakeFolder(PathOf(L"other"));
  MakeFolder(PathOf(L"other\\below"));
  EXPECT_TRUE(Refuses(PathOf(L"other"), "' is not empty"));
}

TEST_F(ConsoleFolderTest, IsNoFile) {
  Put(L"file", "");
  EXPECT_TRUE(Refuses(PathOf(L"file"), "' cannot be made"));
  EXPECT_TRUE(Refuses(PathOf(L"file\\below"), "' cannot be made"));
}

TEST_F(ConsoleFolderTest, IsTriedWithAProbe) {
  const char* const probe = "larkspan-probe.tmp";
  for (const char* fault :
       {"write larkspan-probe.tmp 1 diskFull 2", "open larkspan-probe.tmp 1 accessDenied"}) {
    const FileFaults faults(fault);
    EXPECT_TRUE(Refuses(folder_.path(), "' cannot be written to")) << fault;
    EXPECT_FALSE(Exists(PathOf(std::wstring(probe, probe + 18))));
  }
}

TEST_F(ConsoleFolderTest, IsLockedForOneAtATime) {
  {
    const FolderLock first(L"C:\\Export\\Ä 日本");
    EXPECT_TRUE(first.IsHeld());
    EXPECT_FALSE(FolderLock(L"C:\\Export\\Ä 日本").IsHeld());
    EXPECT_FALSE(FolderLock(L"c:\\EXPORT\\ä 日本").IsHeld());
    EXPECT_TRUE(FolderLock(L"C:\\Export\\Ä 日本.attempt-1").IsHeld());
  }
  EXPECT_TRUE(FolderLock(L"C:\\Export\\Ä 日本").IsHeld());
}

TEST_F(ConsoleFolderTest, WhatIsMovedAsideIsPutBackWhereNothingNewWasMade) {
  Put(L"acl.dxl", "first acl");
  Put(L"db.dxl", "first db");
  MoveDatabaseFilesAside(folder_.path());
  EXPECT_FALSE(Exists(PathOf(L"acl.dxl")));
  EXPECT_FALSE(Exists(PathOf(L"db.dxl")));
  Put(L"db.dxl", "second db");
  EXPECT_TRUE(SettleDatabaseFiles(folder_.path()));
  EXPECT_EQ(ReadBytes(PathOf(L"acl.dxl")), "first acl");
  EXPECT_EQ(ReadBytes(PathOf(L"db.dxl")), "second db");
  EXPECT_FALSE(Exists(PathOf(L"acl.dxl.first")));
  EXPECT_FALSE(Exists(PathOf(L"db.dxl.first")));
}

TEST_F(ConsoleFolderTest, ANewFileIsNotReplacedByTheOneThatWasMovedAside) {
  Put(L"acl.dxl", "first acl");
  MoveDatabaseFilesAside(folder_.path());
  Put(L"acl.dxl", "second acl");
  EXPECT_FALSE(SettleDatabaseFiles(folder_.path()));
  EXPECT_EQ(ReadBytes(PathOf(L"acl.dxl")), "second acl");
  EXPECT_FALSE(Exists(PathOf(L"acl.dxl.first")));
}

TEST_F(ConsoleFolderTest, WhatWasNotThereCanBeMovedAside) {
  MoveDatabaseFilesAside(folder_.path());
  EXPECT_FALSE(SettleDatabaseFiles(folder_.path()));
  EXPECT_TRUE(IsEmptyFolder(folder_.path()));
}

TEST_F(ConsoleFolderTest, ADesignFileThatWasMovedAsideIsPutBack) {
  MakeFolder(PathOf(L"design"));
  Put(L"design\\00000202.dxl", "first");
  MoveDesignFileAside(folder_.path(), 0x202);
  // The exporter's report counts whatever lies there.
  EXPECT_TRUE(IsEmptyFolder(PathOf(L"design")));
  Put(L"log.txt", "#WARNING# - Major: Error exporting note 00000202 (Note item not found)\r\n");
  SettleDesignFiles(folder_.path());
  EXPECT_EQ(ReadBytes(PathOf(L"design\\00000202.dxl")), "first");
  EXPECT_FALSE(Exists(PathOf(L"00000202.dxl.first")));
}

// In its place it would pass for a note that is finished, and its raw copy never be made.
TEST_F(ConsoleFolderTest, ADesignFileOfANoteThatWasNotTriedYetStaysAside) {
  MakeFolder(PathOf(L"design"));
  Put(L"design\\00000202.dxl", "first");
  MoveDesignFileAside(folder_.path(), 0x202);
  Put(L"log.txt", "#WARNING# - Major: Error exporting note 00000206 (Note item not found)\r\n");
  SettleDesignFiles(folder_.path());
  EXPECT_TRUE(IsEmptyFolder(PathOf(L"design")));
  EXPECT_EQ(ReadBytes(PathOf(L"00000202.dxl.first")), "first");
}

TEST_F(ConsoleFolderTest, ADesignFileThatWasMadeAgainIsNotReplaced) {
  MakeFolder(PathOf(L"design"));
  Put(L"design\\00000202.dxl", "first");
  MoveDesignFileAside(folder_.path(), 0x202);
  Put(L"design\\00000202.dxl", "second");
  SettleDesignFiles(folder_.path());
  EXPECT_EQ(ReadBytes(PathOf(L"design\\00000202.dxl")), "second");
  EXPECT_FALSE(Exists(PathOf(L"00000202.dxl.first")));
}

TEST_F(ConsoleFolderTest, OfAPlainExportTheFilesOfNotesAreCounted) {
  for (const wchar_t* name :
       {L"00000202.dxl", L"00000206.dxl", L"acl.dxl", L"db.dxl", L"log.txt", L"0000020A.xml"}) {
    Put(name, "");
  }
  EXPECT_EQ(CountPlainNotes(folder_.path()), 2u);
}

}  // namespace
}  // namespace larkspan::console
