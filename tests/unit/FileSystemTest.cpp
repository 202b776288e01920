#include "base/FileSystem.h"

#include <gtest/gtest.h>
#include <io.h>
#include <windows.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <string>
#include <utility>

#include "base/FolderFiles.h"
#include "tests/support/FileBytes.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/TempFolder.h"

namespace larkspan {
namespace {

class FileSystemTest : public testing::Test {
 protected:
  TempFolder folder_;
  const std::wstring path_ = folder_ / L"\\\u00E9\u65E5.txt";
};

TEST_F(FileSystemTest, TextModeEndsLinesInCarriageReturnAndLineFeed) {
  file_system::UniqueFile file = file_system::Open(path_, L"w");
  std::fputs("a\n", file.get());
  EXPECT_TRUE(file_system::Close(std::move(file)));
  EXPECT_EQ(ReadBytes(path_), "a\r\n");
}

TEST_F(FileSystemTest, BinaryModeLeavesLineEnds) {
  file_system::UniqueFile file = file_system::Open(path_, L"wb");
  std::fputs("a\n", file.get());
  EXPECT_TRUE(file_system::Close(std::move(file)));
  EXPECT_EQ(ReadBytes(path_), "a\n");
}

TEST_F(FileSystemTest, MissingFileGivesNoStreamAndTheReason) {
  errno = 0;
  EXPECT_FALSE(file_system::Open(path_, L"r"));
  EXPECT_EQ(errno, ENOENT);
}

TEST_F(FileSystemTest, FolderGivesNoStreamAndTheReason) {
  MakeFolder(path_);
  errno = 0;
  EXPECT_FALSE(file_system::Open(path_, L"a"));
  EXPECT_EQ(errno, EACCES);
}

TEST_F(FileSystemTest, NoProcessInheritsAFileOfAnyMode) {
  for (const wchar_t* mode : {L"w", L"wb", L"a", L"ab", L"r", L"rb", L"r+", L"w+b", L"a+"}) {
    const file_system::UniqueFile file = file_system::Open(path_, mode);
    ASSERT_TRUE(file) << mode;
    DWORD flags = HANDLE_FLAG_INHERIT;
    EXPECT_TRUE(GetHandleInformation(reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(file.get()))),
                                     &flags));
    EXPECT_EQ(flags & HANDLE_FLAG_INHERIT, 0U) << mode;
  }
}

// What stands in a file that held "12", after a stream of this mode was to write "3".
std::string WrittenTo(const std::wstring& path, const wchar_t* mode) {
  WriteBytes(path, "12");
  file_system::UniqueFile file = file_system::Open(path, mode);
  std::fputs("3", file.get());
  file_system::Close(std::move(file));
  return ReadBytes(path);
}

TEST_F(FileSystemTest, EveryModeWritesWhereItIsMeantTo) {
  EXPECT_EQ(WrittenTo(path_, L"w"), "3");
  EXPECT_EQ(WrittenTo(path_, L"w+b"), "3");
  EXPECT_EQ(WrittenTo(path_, L"ab"), "123");
  EXPECT_EQ(WrittenTo(path_, L"a+"), "123");
  EXPECT_EQ(WrittenTo(path_, L"r+"), "32");
  EXPECT_EQ(WrittenTo(path_, L"rb"), "12");
}

TEST_F(FileSystemTest, OwnerClosesTheStream) {
  {
    const file_system::UniqueFile file = file_system::Open(path_, L"w");
    std::fputs("a", file.get());
  }
  EXPECT_EQ(ReadBytes(path_), "a");
  EXPECT_TRUE(DeleteFileW(path_.c_str()));
}

TEST_F(FileSystemTest, ClosingToldOfAFailedWrite) {
  WriteBytes(path_, "");
  file_system::UniqueFile file = file_system::Open(path_, L"r");
  std::fputs("a", file.get());
  EXPECT_FALSE(file_system::Close(std::move(file)));
}

TEST_F(FileSystemTest, AppendingMakesTheFile) {
  EXPECT_TRUE(file_system::Append(path_, "a\n").complete);
  EXPECT_EQ(ReadBytes(path_), "a\n");
}

TEST_F(FileSystemTest, AppendingLeavesWhatIsThere) {
  WriteBytes(path_, "a\n");
  EXPECT_TRUE(file_system::Append(path_, "b\n").complete);
  EXPECT_EQ(ReadBytes(path_), "a\nb\n");
}

TEST_F(FileSystemTest, AppendingNothingMakesTheFile) {
  EXPECT_TRUE(file_system::Append(path_, "").complete);
  EXPECT_EQ(ReadBytes(path_), "");
}

TEST_F(FileSystemTest, AppendingTakesEveryByte) {
  const std::string bytes(
      "a\0\xFF\x1A"
      "b",
      5);
  EXPECT_TRUE(file_system::Append(path_, bytes).complete);
  EXPECT_EQ(ReadBytes(path_), bytes);
}

TEST_F(FileSystemTest, AppendingToAFolderFails) {
  MakeFolder(path_);
  EXPECT_FALSE(file_system::Append(path_, "a").complete);
}

TEST_F(FileSystemTest, AppendingInAMissingFolderFails) {
  EXPECT_FALSE(file_system::Append(folder_ / L"\\missing\\a.txt", "a").complete);
}

using CountFilesTest = FileSystemTest;

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

TEST_F(FileSystemTest, FolderIsMadeOnce) {
  const std::wstring folder = folder_ / L"\\made";
  EXPECT_TRUE(file_system::CreateFolder(folder));
  EXPECT_FALSE(file_system::CreateFolder(folder));
}

DWORD WINAPI TellNoFolder(DWORD, wchar_t*) { return 0; }

TEST_F(FileSystemTest, TemporaryFileWantsAFolder) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetTempPathW", TellNoFolder);
  EXPECT_FALSE(file_system::OpenTemporary());
}

UINT WINAPI GiveNoName(const wchar_t*, const wchar_t*, UINT, wchar_t*) { return 0; }

TEST_F(FileSystemTest, TemporaryFileWantsAName) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetTempFileNameW", GiveNoName);
  EXPECT_FALSE(file_system::OpenTemporary());
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

TEST_F(FileSystemTest, TemporaryFileThatCannotBeOpenedDoesNotStay) {
  temporaryFolder = folder_.path();
  const ReplacedEntryPoint folder("KERNEL32.dll", "GetTempPathW", TellOwnFolder);
  const ReplacedEntryPoint opening("KERNEL32.dll", "CreateFileW", OpenNothing);
  EXPECT_FALSE(file_system::OpenTemporary());
  EXPECT_EQ(CountFiles(folder_.path()), 0);
}

HANDLE openedTemporary = nullptr;

int GiveNoDescriptor(std::intptr_t handle, int) {
  openedTemporary = reinterpret_cast<HANDLE>(handle);
  return -1;
}

TEST_F(FileSystemTest, TemporaryFileWithoutADescriptorIsClosed) {
  const ReplacedEntryPoint replaced("msvcrt.dll", "_open_osfhandle", GiveNoDescriptor);
  EXPECT_FALSE(file_system::OpenTemporary());
  DWORD flags = 0;
  EXPECT_FALSE(GetHandleInformation(openedTemporary, &flags));
}

int openedDescriptor = -1;

std::FILE* GiveNoStream(int descriptor, const char*) {
  openedDescriptor = descriptor;
  return nullptr;
}

TEST_F(FileSystemTest, TemporaryFileWithoutAStreamIsClosed) {
  const ReplacedEntryPoint replaced("msvcrt.dll", "_fdopen", GiveNoStream);
  EXPECT_FALSE(file_system::OpenTemporary());
  EXPECT_EQ(_get_osfhandle(openedDescriptor), -1);
}

TEST_F(FileSystemTest, FileThatIsThereExists) {
  WriteBytes(path_, "");
  EXPECT_TRUE(FileExists(path_));
  EXPECT_TRUE(FileExists(L"\\\\?\\" + path_));
}

TEST_F(FileSystemTest, NeitherAFolderNorAMissingFileExists) {
  EXPECT_FALSE(FileExists(path_));
  EXPECT_FALSE(FileExists(folder_.path()));
}

}  // namespace
}  // namespace larkspan
