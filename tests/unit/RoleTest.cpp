#include "app/Role.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/FileBytes.h"
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

}  // namespace
}  // namespace larkspan
