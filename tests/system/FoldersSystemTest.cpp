// Output folders that cannot be written to, and names outside ASCII and with blanks everywhere.
#include <windows.h>

#include <filesystem>

#include "tests/support/FileBytes.h"
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

constexpr char kIdFile[] = R"({"name": "CN=Zo\u00eb \u03a9mega/O=B\u00e9z\u00e9", )"
                           R"("password": "pass w\u00f6rd \u65e5"})";

class FoldersSystemTest : public SystemTest {
 protected:
  std::wstring InOutput(const std::wstring& name) const { return run_.output() + L"\\" + name; }

  void Block(const std::wstring& name) { std::filesystem::create_directory(InOutput(name)); }
};

TEST_F(FoldersSystemTest, ALogAndAnAuditReportThatCannotBeOpenedAreSilent) {
  Block(L"log.txt");
  Block(L"audit.txt");
  run_.AddDatabase(L"two.nsf", DocumentsJson(2));
  EXPECT_EQ(run_.Export(L"two.nsf", {L"-archive", L"-debug"}).exitCode, 0u);
  EXPECT_EQ(FilesIn("data").size(), 2u);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(FoldersSystemTest, AListThatCannotBeSavedEndsTheRun) {
  Block(L"idtable.txt");
  run_.AddDatabase(L"two.nsf", DocumentsJson(2));
  run_.Export(L"two.nsf", {L"-archive"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to save document list"});
  EXPECT_EQ(FilesIn("data"), Lines{});
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(FoldersSystemTest, ALaterWorkerWithoutTheListEndsTheRun) {
  run_.AddDatabase(L"two.nsf", DocumentsJson(2));
  run_.Export(L"two.nsf", {L"-archive", L"-l", L"00000902"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to read document list"});
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(FoldersSystemTest, ALaterWorkerWithADamagedListEndsTheRun) {
  run_.AddDatabase(L"two.nsf", DocumentsJson(2));
  WriteBytes(InOutput(L"idtable.txt"), "00000902\r\nXYZ\r\n00000906\r\n");
  run_.Export(L"two.nsf", {L"-archive", L"-l", L"00000001"});
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to read document list"});
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(FoldersSystemTest, AnOutputFolderWithBlanksAndNonAsciiLettersHoldsTheWholeTree) {
  const std::wstring output = run_.folder() + L"\\the \u00f6utput \u65e5\u672c \u03a9";
  std::filesystem::create_directory(output);
  run_.SetOutput(output);
  run_.AddDatabase(L"b\u00e9zier \u65e5\u672c\\o n e.nsf", DocumentsJson(1));
  const ProgramResult result =
      run_.Export(L"b\u00e9zier \u65e5\u672c\\o n e.nsf", {L"-archive", L"-s", L"<Local>"});
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
  const std::string path = "b\xC3\xA9zier \xE6\x97\xA5\xE6\x9C\xAC\\o n e.nsf";
  EXPECT_TRUE(Contains(AuditLines(), "Archive database path  : " + path));
  EXPECT_NE(result.standardOutput.find("Opening '" + path + "' on '<Local>'\r\n"),
            std::string::npos);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(FoldersSystemTest, IdFilesUserNamesAndPasswordsMayBeOutsideAscii) {
  const std::wstring idFile = run_.folder() + L"\\Zo\u00eb \u65e5.id";
  WriteBytes(idFile, kIdFile);
  run_.AddDatabase(L"one.nsf", DocumentsJson(1));
  run_.Export(L"one.nsf", {L"-archive", L"-id", idFile, L"-password", L"pass w\u00f6rd \u65e5"});
  EXPECT_FALSE(run_.HasOutputFile(L"log.txt"));
  EXPECT_TRUE(
      Contains(AuditLines(), "Set user to: CN=Zo\xC3\xAB \xCE\xA9mega/O=B\xC3\xA9z\xC3\xA9"));
}

TEST_F(FoldersSystemTest, TheProgramRunsFromAFolderWithBlanksAndNonAsciiLetters) {
  run_.UseProgramCopy(run_.folder() + L"\\pro gram \u65e5\u00e9", ProgramFolder());
  run_.AddDatabase(L"one.nsf", DocumentsJson(1));
  EXPECT_EQ(run_.Export(L"one.nsf", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
}

TEST_F(FoldersSystemTest, ATemporaryFileHeldByAnotherProgramFailsEachExportButNotTheRun) {
  run_.AddDatabase(L"one.nsf", DocumentsJson(1));
  const UniqueSystemHandle held(CreateFileW(InOutput(L"temp.tmp").c_str(), GENERIC_WRITE, 0,
                                            nullptr, CREATE_NEW, 0, nullptr));
  run_.Export(L"one.nsf", {L"-archive"});
  const Lines log = LogLines();
  ASSERT_GE(log.size(), 4u);
  EXPECT_EQ(log[0], "#WARNING# - Unable to delete DXL temporary file (tried retry)");
  EXPECT_TRUE(log[1].starts_with("#WARNING# - Error exporting ACL ("));
  EXPECT_EQ(log[2], "#WARNING# - Unable to delete DXL temporary file (tried retry)");
  EXPECT_TRUE(log[3].starts_with("#WARNING# - Major: Error exporting note 00000902 ("));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(FoldersSystemTest, AFolderInTheTemporaryFilesPlaceGivesNoFileAtAll) {
  Block(L"temp.tmp");
  run_.AddDatabase(L"one.nsf", DocumentsJson(1));
  run_.Export(L"one.nsf", {L"-archive"});
  EXPECT_FALSE(run_.HasOutputFile(L"acl.dxl"));
  EXPECT_EQ(FilesIn("data"), Lines{});
  EXPECT_TRUE(Contains(AuditLines(), "Failed total documents   :        1"));
}

}  // namespace
}  // namespace larkspan::testing
