#include "base/File.h"

#include <gtest/gtest.h>
#include <io.h>
#include <windows.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>

#include "base/CountFiles.h"
#include "tests/support/FileBytes.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/TempFolder.h"

namespace larkspan {
namespace {

class FileTest : public testing::Test {
 protected:
  TempFolder folder_;
  const std::wstring path_ = folder_ / L"\\\u00E9\u65E5.txt";
};

TEST_F(FileTest, TextModeEndsLinesInCarriageReturnAndLineFeed) {
  UniqueFile file = OpenFile(path_, L"w");
  std::fputs("a\n", file.get());
  EXPECT_TRUE(CloseFile(std::move(file)));
  EXPECT_EQ(ReadBytes(path_), "a\r\n");
}

TEST_F(FileTest, BinaryModeLeavesLineEnds) {
  UniqueFile file = OpenFile(path_, L"wb");
  std::fputs("a\n", file.get());
  EXPECT_TRUE(CloseFile(std::move(file)));
  EXPECT_EQ(ReadBytes(path_), "a\n");
}

TEST_F(FileTest, MissingFileGivesNoStreamAndTheReason) {
  errno = 0;
  EXPECT_FALSE(OpenFile(path_, L"r"));
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(FileTest, FolderGivesNoStreamAndTheReason) {
  MakeFolder(path_);
  errno = 0;
  EXPECT_FALSE(OpenFile(path_, L"a"));
  EXPECT_EQ(errno, EACCES);
}

TEST_F(FileTest, OwnerClosesTheStream) {
  {
    const UniqueFile file = OpenFile(path_, L"w");
    std::fputs("a", file.get());
  }
  EXPECT_EQ(ReadBytes(path_), "a");
  EXPECT_TRUE(DeleteFileW(path_.c_str()));
}

TEST_F(FileTest, ClosingToldOfAFailedWrite) {
  WriteBytes(path_, "");
  UniqueFile file = OpenFile(path_, L"r");
  std::fputs("a", file.get());
  EXPECT_FALSE(CloseFile(std::move(file)));
}

TEST_F(FileTest, AppendingMakesTheFile) {
  EXPECT_TRUE(AppendToTextFile(path_, "a\n"));
  EXPECT_EQ(ReadBytes(path_), "a\r\n");
}

TEST_F(FileTest, AppendingLeavesWhatIsThere) {
  WriteBytes(path_, "a\r\n");
  EXPECT_TRUE(AppendToTextFile(path_, "b\n"));
  EXPECT_EQ(ReadBytes(path_), "a\r\nb\r\n");
}

TEST_F(FileTest, AppendingNothingMakesTheFile) {
  EXPECT_TRUE(AppendToTextFile(path_, ""));
  EXPECT_EQ(ReadBytes(path_), "");
}

TEST_F(FileTest, AppendingTakesEveryByte) {
  const std::string bytes(
      "a\0\xFF\x1A"
      "b",
      5);
  EXPECT_TRUE(AppendToTextFile(path_, bytes));
  EXPECT_EQ(ReadBytes(path_), bytes);
}

TEST_F(FileTest, AppendingToAFolderFails) {
  MakeFolder(path_);
  EXPECT_FALSE(AppendToTextFile(path_, "a"));
}

TEST_F(FileTest, AppendingInAMissingFolderFails) {
  EXPECT_FALSE(AppendToTextFile(folder_ / L"\\missing\\a.txt", "a"));
}

using CountFilesTest = FileTest;

TEST_F(CountFilesTest, EmptyFolderHoldsNone) { EXPECT_EQ(CountFiles(folder_.path()), 0); }

TEST_F(CountFilesTest, MissingFolderHoldsNone) { EXPECT_EQ(CountFiles(folder_ / L"\\missing"), 0); }

TEST_F(CountFilesTest, FileHoldsNone) {
  WriteBytes(path_, "");
  EXPECT_EQ(CountFiles(path_), 0);
}

TEST_F(CountFilesTest, FilesOfAnyNameAreCounted) {
  for (const wchar_t* name : {L"\\a.dxl", L"\\no dot", L"\\.hidden", L"\\\u65E5.xml"}) {
    WriteBytes(folder_ / name, "");
  }
  EXPECT_EQ(CountFiles(folder_.path()), 4);
}

TEST_F(CountFilesTest, HiddenAndReadOnlyFilesAreCounted) {
  WriteBytes(path_, "");
  SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_READONLY);
  EXPECT_EQ(CountFiles(folder_.path()), 1);
  SetFileAttributesW(path_.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST_F(CountFilesTest, FoldersAndTheirFilesAreNotCounted) {
  MakeFolder(folder_ / L"\\sub.dxl");
  WriteBytes(folder_ / L"\\sub.dxl\\a.dxl", "");
  EXPECT_EQ(CountFiles(folder_.path()), 0);
}

TEST_F(FileTest, FolderIsMadeOnce) {
  const std::wstring folder = folder_ / L"\\made";
  EXPECT_TRUE(file_system::CreateFolder(folder));
  EXPECT_FALSE(file_system::CreateFolder(folder));
}

DWORD WINAPI TellNoFolder(DWORD, wchar_t*) { return 0; }

TEST_F(FileTest, TemporaryFileWantsAFolder) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetTempPathW", TellNoFolder);
  EXPECT_FALSE(OpenTemporaryFile());
}

UINT WINAPI GiveNoName(const wchar_t*, const wchar_t*, UINT, wchar_t*) { return 0; }

TEST_F(FileTest, TemporaryFileWantsAName) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetTempFileNameW", GiveNoName);
  EXPECT_FALSE(OpenTemporaryFile());
}

std::wstring temporaryFolder;

DWORD WINAPI TellOwnFolder(DWORD, wchar_t* path) {
  temporaryFolder.copy(path, temporaryFolder.size());
  path[temporaryFolder.size()] = L'\0';
  return static_cast<DWORD>(temporaryFolder.size());
}

HANDLE WINAPI OpenNothing(const wchar_t*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD,
                          HANDLE) {
  return INVALID_HANDLE_VALUE;
}

TEST_F(FileTest, TemporaryFileThatCannotBeOpenedDoesNotStay) {
  temporaryFolder = folder_.path();
  const ReplacedEntryPoint folder("KERNEL32.dll", "GetTempPathW", TellOwnFolder);
  const ReplacedEntryPoint opening("KERNEL32.dll", "CreateFileW", OpenNothing);
  EXPECT_FALSE(OpenTemporaryFile());
  EXPECT_EQ(CountFiles(folder_.path()), 0);
}

HANDLE openedTemporary = nullptr;

int GiveNoDescriptor(std::intptr_t handle, int) {
  openedTemporary = reinterpret_cast<HANDLE>(handle);
  return -1;
}

TEST_F(FileTest, TemporaryFileWithoutADescriptorIsClosed) {
  const ReplacedEntryPoint replaced("msvcrt.dll", "_open_osfhandle", GiveNoDescriptor);
  EXPECT_FALSE(OpenTemporaryFile());
  DWORD flags = 0;
  EXPECT_FALSE(GetHandleInformation(openedTemporary, &flags));
}

int openedDescriptor = -1;

std::FILE* GiveNoStream(int descriptor, const char*) {
  openedDescriptor = descriptor;
  return nullptr;
}

TEST_F(FileTest, TemporaryFileWithoutAStreamIsClosed) {
  const ReplacedEntryPoint replaced("msvcrt.dll", "_fdopen", GiveNoStream);
  EXPECT_FALSE(OpenTemporaryFile());
  EXPECT_EQ(_get_osfhandle(openedDescriptor), -1);
}

}  // namespace
}  // namespace larkspan
