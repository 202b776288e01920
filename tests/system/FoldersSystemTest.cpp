// Names outside ASCII, with spaces, wherever a path or a name can stand.
#include <algorithm>
#include <filesystem>

#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class FoldersSystemTest : public SystemTest {
 protected:
  void SetUp() override { run_.AddDatabase(L"x.nsf", DocumentsJson(1)); }

  void ExpectTheNoteExported(std::size_t runtimes = 1) {
    EXPECT_EQ(LogLines(), Lines());
    EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
    EXPECT_EQ(run_.LedgerFault(runtimes), "");
  }
};

TEST_F(FoldersSystemTest, TheOutputFolderMayHaveAnyName) {
  run_.SetOutput(run_.folder() + L"\\Ausgabe \u00FCber \u03A9, \u65E5\u672C (\U0001FAB2)");
  std::filesystem::create_directory(run_.output());
  run_.Export(L"x.nsf", {L"-archive"});
  ExpectTheNoteExported();
}

TEST_F(FoldersSystemTest, AnOutputFolderMayEndInABackslash) {
  run_.SetOutput(run_.output() + L"\\");
  run_.Export(L"x.nsf", {L"-archive"});
  ExpectTheNoteExported();
}

// Longer than paths may be otherwise.
TEST_F(FoldersSystemTest, AnOutputFolderThatTheSystemTakesAsItStandsMayBeLong) {
  const std::wstring name(150, L'a');
  const std::wstring folder = run_.folder() + L"\\" + name + L"\\" + name;
  std::filesystem::create_directories(folder);
  run_.SetOutput(L"\\\\?\\" + folder);
  run_.AddDatabase(
      L"x.nsf",
      DocumentsJson(
          2, FaultsMember(R"({"entry": "DXLExportNote", "note": "00000906", "action": "exit"})")));
  run_.Export(L"x.nsf", {L"-archive"});
  run_.SetOutput(folder);
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Major: Incomplete run detected for note id 00000906"});
  EXPECT_EQ(Tail(AuditLines(), 12), ClosingLines({.listed = 2, .data = 1, .failed = 1}));
  EXPECT_TRUE(run_.HasOutputFile(L"data\\00000902.dxl"));
}

TEST_F(FoldersSystemTest, TheDatabaseMayHaveAnyName) {
  const std::wstring database = L"G\u00E4rten im \u03A9\\\u65E5\u672C \U0001FAB2.nsf";
  run_.AddDatabase(database, DocumentsJson(1));
  const ProgramResult result = run_.Export(database, {L"-archive"});
  ExpectTheNoteExported();
  const std::string name =
      "G\xC3\xA4rten im \xCE\xA9\\\xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\xAA\xB2.nsf";
  EXPECT_EQ(AuditLines().at(3), "Archive database path  : " + name);
  EXPECT_TRUE(result.standardOutput.starts_with("PROGRESS: Opening '" + name + "' on ''\r\n"))
      << result.standardOutput;
}

TEST_F(FoldersSystemTest, TheServerMayHaveAnyName) {
  run_.AddDatabase(L"servers\\M\u00FChle \u03A9\\x.nsf", DocumentsJson(1));
  const ProgramResult result = run_.Export(L"x.nsf", {L"-s", L"M\u00FChle \u03A9", L"-archive"});
  ExpectTheNoteExported();
  EXPECT_EQ(AuditLines().at(2), "Archive database server: M\xC3\xBChle \xCE\xA9");
  EXPECT_TRUE(
      result.standardOutput.starts_with("PROGRESS: Opening 'x.nsf' on 'M\xC3\xBChle \xCE\xA9'"))
      << result.standardOutput;
}

TEST_F(FoldersSystemTest, TheIdFileItsPasswordAndItsUserMayHaveAnyName) {
  run_.AddDatabase(L"ids\\\u03A9 \u65E5.id",
                   "{\"name\": \"CN=J\xC3\xB6rg \xCE\xA9/O=Garten\", "
                   "\"password\": \"gr\xC3\xBCn \xE6\x97\xA5 \\\" \xF0\x9F\xAA\xB2\"}");
  run_.Export(L"x.nsf", {L"-archive", L"-id", L"ids\\\u03A9 \u65E5.id", L"-password",
                         L"gr\u00FCn \u65E5 \" \U0001FAB2"});
  ExpectTheNoteExported();
  EXPECT_EQ(AuditLines().at(1), "Set user to: CN=J\xC3\xB6rg \xCE\xA9/O=Garten");
}

TEST_F(FoldersSystemTest, TheProgramFolderMayHaveAnyName) {
  run_.UseProgramCopy(run_.folder() + L"\\Programme \u03A9 \u65E5", ProgramFolder());
  run_.Export(L"x.nsf", {L"-archive"});
  ExpectTheNoteExported();
}

TEST_F(FoldersSystemTest, WorkersAreStartedFromAProgramFolderOfAnyName) {
  run_.AddDatabase(
      L"x.nsf",
      DocumentsJson(
          2, FaultsMember(R"({"entry": "DXLExportNote", "note": "00000906", "action": "exit"})")));
  run_.UseProgramCopy(run_.folder() + L"\\Programme \u03A9 \u65E5", ProgramFolder());
  run_.Export(L"x.nsf", {L"-archive"});
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Major: Incomplete run detected for note id 00000906"});
}

// The library takes this one in the ANSI code page.
TEST_F(FoldersSystemTest, TheConfigurationMayHaveANameOfTheAnsiCodePage) {
  const std::wstring folder = run_.folder() + L"\\Konfiguration \u00E9";
  std::filesystem::create_directory(folder);
  run_.WriteConfigurationTo(folder + L"\\notes.ini");
  run_.RunArguments(
      {L"=" + folder + L"\\notes.ini", L"-p", L"x.nsf", L"-o", run_.output(), L"-archive"});
  ExpectTheNoteExported();
}

TEST_F(FoldersSystemTest, ForwardSlashesSeparateFoldersToo) {
  std::wstring output = run_.output();
  std::replace(output.begin(), output.end(), L'\\', L'/');
  run_.SetOutput(output);
  run_.Export(L"x.nsf", {L"-archive"});
  ExpectTheNoteExported();
}

}  // namespace
}  // namespace larkspan::testing
