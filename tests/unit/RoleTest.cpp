#include "app/Role.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>

#include "tests/support/FileBytes.h"
#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/TempFolder.h"

namespace larkspan {
namespace {

// A complete export into a folder that exists; tests change what they are about.
class RoleTest : public testing::Test {
 protected:
  RoleTest() {
    line_.settings.databasePath = L"a.nsf";
    line_.settings.outputFolder = folder_.path();
  }

  Role RoleWithOutputFolder(const std::wstring& path) {
    line_.settings.outputFolder = path;
    return ChooseRole(line_);
  }

  Settings& settings() { return line_.settings; }

  TempFolder folder_;
  ParsedCommandLine line_;
};

TEST_F(RoleTest, ExportWithoutResumeNoteIdIsSupervisor) {
  EXPECT_EQ(ChooseRole(line_), Role::kSupervisor);
}

TEST_F(RoleTest, ResumeNoteIdThatMeansNoNoteIsSupervisor) {
  settings().resumeNoteId = 0xFFFFFFFF;
  EXPECT_EQ(ChooseRole(line_), Role::kSupervisor);
}

TEST_F(RoleTest, ResumeNoteIdIsWorker) {
  settings().resumeNoteId = 0x12F6;
  EXPECT_EQ(ChooseRole(line_), Role::kWorker);
}

TEST_F(RoleTest, ResumeNoteIdZeroIsWorker) {
  settings().resumeNoteId = 0;
  EXPECT_EQ(ChooseRole(line_), Role::kWorker);
}

TEST_F(RoleTest, RefusedCommandLineWinsOverEverything) {
  line_.accepted = false;
  line_.showVersion = true;
  settings().scan = true;
  EXPECT_EQ(ChooseRole(line_), Role::kRefused);
}

TEST_F(RoleTest, VersionWinsOverListingsAndExport) {
  line_.showVersion = true;
  settings().scan = true;
  settings().servers = true;
  EXPECT_EQ(ChooseRole(line_), Role::kVersion);
}

TEST_F(RoleTest, VersionNeedsNoExportSettings) {
  line_.showVersion = true;
  line_.settings = Settings();
  EXPECT_EQ(ChooseRole(line_), Role::kVersion);
}

TEST_F(RoleTest, ScanWinsOverServersAndExport) {
  settings().scan = true;
  settings().servers = true;
  EXPECT_EQ(ChooseRole(line_), Role::kScan);
}

TEST_F(RoleTest, ServersWinsOverExport) {
  settings().servers = true;
  EXPECT_EQ(ChooseRole(line_), Role::kServers);
}

TEST_F(RoleTest, ListingWinsOverWorker) {
  settings().servers = true;
  settings().resumeNoteId = 0;
  EXPECT_EQ(ChooseRole(line_), Role::kServers);
}

TEST_F(RoleTest, ScanDoesNotLookAtTheOutputFolder) {
  settings().scan = true;
  EXPECT_EQ(RoleWithOutputFolder(folder_ / L"\\missing"), Role::kScan);
}

TEST_F(RoleTest, ScanNeedsNoExportSettings) {
  line_.settings = Settings();
  settings().scan = true;
  EXPECT_EQ(ChooseRole(line_), Role::kScan);
}

TEST_F(RoleTest, ServersNeedsNoExportSettings) {
  line_.settings = Settings();
  settings().servers = true;
  EXPECT_EQ(ChooseRole(line_), Role::kServers);
}

TEST_F(RoleTest, ExportWithoutDatabasePathIsRefused) {
  settings().databasePath.clear();
  EXPECT_EQ(ChooseRole(line_), Role::kRefused);
}

TEST_F(RoleTest, ExportWithoutOutputFolderIsRefused) {
  EXPECT_EQ(RoleWithOutputFolder(L""), Role::kRefused);
}

TEST_F(RoleTest, WorkerWithoutDatabasePathIsRefused) {
  settings().resumeNoteId = 0;
  settings().databasePath.clear();
  EXPECT_EQ(ChooseRole(line_), Role::kRefused);
}

TEST_F(RoleTest, OutputFolderThatIsMissingIsRefused) {
  EXPECT_EQ(RoleWithOutputFolder(folder_ / L"\\missing"), Role::kRefused);
}

TEST_F(RoleTest, OutputFolderThatIsAFileIsRefused) {
  WriteBytes(folder_ / L"\\file", "");
  EXPECT_EQ(RoleWithOutputFolder(folder_ / L"\\file"), Role::kRefused);
}

TEST_F(RoleTest, WorkerWithMissingOutputFolderIsRefused) {
  settings().resumeNoteId = 0;
  EXPECT_EQ(RoleWithOutputFolder(folder_ / L"\\missing"), Role::kRefused);
}

TEST_F(RoleTest, MissingOutputFolderOfGreatLengthBeyondAsciiIsRefused) {
  EXPECT_EQ(RoleWithOutputFolder(folder_.path() + std::wstring(5000, L'\u65E5')), Role::kRefused);
}

TEST_F(RoleTest, OutputFolderMayEndInBackslash) {
  EXPECT_EQ(RoleWithOutputFolder(folder_ / L"\\"), Role::kSupervisor);
}

TEST_F(RoleTest, OutputFolderMayHaveAnyName) {
  MakeFolder(folder_ / L"\\\u0416 \u00FC");
  EXPECT_EQ(RoleWithOutputFolder(folder_ / L"\\\u0416 \u00FC"), Role::kSupervisor);
}

class LongOutputFolderTest : public RoleTest {
 protected:
  // A folder inside the test's own whose path has that many characters.
  std::wstring FolderOfLength(std::size_t length) const {
    std::wstring path = folder_.path();
    while (path.size() + 100 < length) path += L"\\" + std::wstring(50, L'a');
    path += L"\\" + std::wstring(length - path.size() - 1, L'a');
    std::filesystem::create_directories(path);
    return path;
  }
};

// The longest name of an archive has 23 characters, and a path has 259 at the most.
TEST_F(LongOutputFolderTest, FolderWhoseLongestFileIsWithinReachIsUsed) {
  settings().archive = true;
  EXPECT_EQ(RoleWithOutputFolder(FolderOfLength(236)), Role::kSupervisor);
}

TEST_F(LongOutputFolderTest, FolderWhoseLongestFileIsNotWithinReachIsRefused) {
  settings().archive = true;
  EXPECT_EQ(RoleWithOutputFolder(FolderOfLength(237)), Role::kRefused);
}

TEST_F(LongOutputFolderTest, ExportWithoutArchiveHasShorterNames) {
  EXPECT_EQ(RoleWithOutputFolder(FolderOfLength(246)), Role::kSupervisor);
  EXPECT_EQ(RoleWithOutputFolder(FolderOfLength(247)), Role::kRefused);
}

TEST_F(LongOutputFolderTest, ThatTheSystemTakesAsItStandsIsUsed) {
  settings().archive = true;
  EXPECT_EQ(RoleWithOutputFolder(L"\\\\?\\" + FolderOfLength(300)), Role::kSupervisor);
}

DWORD WINAPI TellAFolder(const wchar_t*) { return FILE_ATTRIBUTE_DIRECTORY; }

// The system counts at most 32766 characters, its NUL left out.
TEST_F(LongOutputFolderTest, ThatTheSystemTakesAsItStandsHasTheLengthThatItCounts) {
  settings().archive = true;
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetFileAttributesW", TellAFolder);
  const std::wstring longest = L"\\\\?\\" + std::wstring(32766 - 23 - 4, L'a');
  EXPECT_EQ(RoleWithOutputFolder(longest), Role::kSupervisor);
  EXPECT_EQ(RoleWithOutputFolder(longest + L'a'), Role::kRefused);
}

BOOLEAN WINAPI LongPathsAreEnabled() { return TRUE; }

FARPROC WINAPI TellThatLongPathsAreEnabled(HMODULE, const char*) {
  return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(LongPathsAreEnabled));
}

TEST_F(LongOutputFolderTest, WhereLongPathsAreEnabledIsUsed) {
  settings().archive = true;
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetProcAddress", TellThatLongPathsAreEnabled);
  EXPECT_EQ(RoleWithOutputFolder(FolderOfLength(300)), Role::kSupervisor);
}

}  // namespace
}  // namespace larkspan
