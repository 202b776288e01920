// verify, the real program, on what the real exporter leaves of the samples.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "base/Utf8.h"
#include "console/account/Verify.h"
#include "tests/console/account/HandMadeExport.h"
#include "tests/support/ExportRun.h"

namespace larkspan::testing {
namespace {

using console::Account;
using console::ExitCode;
using console::Told;

const std::string kOneDocument =
    R"({"sizeKilobytes": 64, "notes": [{"id": "00000902", "items": [{"name": "Form", "text": "N"}]}]})";

class VerifySystemTest : public ::testing::Test {
 protected:
  // Of the folder as it is, by the account within this process.
  Account VerifyHere() {
    std::string whyNot;
    const std::optional<Account> account = console::VerifyFolder(run_.output(), nullptr, whyNot);
    EXPECT_TRUE(account) << whyNot;
    return account.value_or(Account());
  }

  ProgramResult Verify(const std::vector<std::wstring>& options = {}) {
    std::vector<std::wstring> line = {ProgramFolder() + L"\\larkspan-console.exe", L"verify",
                                      run_.output()};
    line.insert(line.end(), options.begin(), options.end());
    return Program(line.front(), BuildCommandLine(line)).WaitForEnd();
  }

  ExportRun run_;
};

struct SampleCase {
  const wchar_t* database;
  bool archive;
  ExitCode code;
  Lines told;
};

std::string LostNote(const char* id, const std::string& stageAndCause) {
  return "lost note " + std::string(id) + " " + stageAndCause;
}

const std::string kDied = "crash a worker died at it";
const std::string kUnmarked = "pictures its pictures were left out; log.txt has no line of it";
const std::string kMarked = "pictures damaged; exported without its pictures";
const std::string kDesignError =
    "Unable to export design: Design of the database cannot be exported";

const std::vector<SampleCase> kSamples = {
    {L"sample.nsf", true, ExitCode::kWhole, {}},
    {L"sample.nsf", false, ExitCode::kWhole, {}},
    {L"empty.nsf", true, ExitCode::kWhole, {}},
    {L"empty.nsf", false, ExitCode::kWhole, {}},
    {L"damaged.nsf",
     true,
     ExitCode::kLosses,
     {LostNote("00000206", "export Form holds a field that cannot be exported"),
      "lost raw copy 0000020E raw copy Notes error 585",
      LostNote("00001206", "open Note does not exist in the database"),
      "lost pictures 0000120A " + kMarked, "lost pictures 0000120E " + kUnmarked,
      LostNote("00001212", "export Rich text is damaged"), "lost pictures 00001216 " + kMarked,
      "lost pictures 0000121A " + kUnmarked, LostNote("0000121E", "export Notes error 13856"),
      LostNote("00001222", "export Notes error 13823"),
      LostNote("00001226", "export Note does not exist in the database"),
      "lost pictures 0000122E " + kMarked, LostNote("00001232", "export Notes error 585"),
      LostNote("00001236", kDied), LostNote("0000123A", "export Notes error 585")}},
    {L"damaged.nsf",
     false,
     ExitCode::kLosses,
     {LostNote("00000206", "export Form holds a field that cannot be exported")}},
    {L"damaged-views.nsf",
     true,
     ExitCode::kLosses,
     {LostNote("00000226", "open Note does not exist in the database")}},
    {L"crash-first.nsf", true, ExitCode::kLosses, {LostNote("00000902", kDied)}},
    {L"crash-middle.nsf", true, ExitCode::kLosses, {LostNote("0000090A", kDied)}},
    {L"crash-last.nsf", true, ExitCode::kLosses, {LostNote("00000912", kDied)}},
    {L"crash-two.nsf",
     true,
     ExitCode::kLosses,
     {LostNote("00000906", kDied), LostNote("0000090A", kDied)}},
    {L"crash-all.nsf",
     true,
     ExitCode::kLosses,
     {LostNote("00000902", kDied), LostNote("00000906", kDied), LostNote("0000090A", kDied),
      LostNote("0000090E", kDied), LostNote("00000912", kDied)}},
    {L"designfail-6967.nsf",
     true,
     ExitCode::kIncomplete,
     {LostNote("00000206", "run " + kDesignError), LostNote("0000020A", "run " + kDesignError),
      LostNote("00000902", "run " + kDesignError), "incomplete log.txt", "incomplete audit.txt"}},
};

class VerifySampleTest : public VerifySystemTest,
                         public ::testing::WithParamInterface<SampleCase> {};

TEST_P(VerifySampleTest, EachNoteIsAccountedForByItsId) {
  std::vector<std::wstring> arguments;
  if (GetParam().archive) arguments.push_back(L"-archive");
  run_.Export(GetParam().database, arguments);
  const Account account = VerifyHere();
  EXPECT_EQ(account.archive, GetParam().archive);
  EXPECT_EQ(Told(account), GetParam().told);
  EXPECT_EQ(Verify({L"--quiet"}).exitCode, static_cast<std::uint32_t>(GetParam().code));
}

std::string SampleName(const ::testing::TestParamInfo<SampleCase>& test) {
  std::string name = WideToUtf8(test.param.database);
  std::erase_if(name, [](char letter) { return letter == '-' || letter == '.'; });
  return name + (test.param.archive ? "" : "Plain");
}

INSTANTIATE_TEST_SUITE_P(Samples, VerifySampleTest, ::testing::ValuesIn(kSamples), SampleName);

TEST_F(VerifySystemTest, SealedNotesWithoutAnIdAreLostWhenDecrypted) {
  run_.Export(L"sealed.nsf", {L"-archive"});
  const Account account = VerifyHere();
  EXPECT_EQ(account.Verdict(), ExitCode::kLosses);
  ASSERT_EQ(account.losses.size(), account.notes.lost);
  EXPECT_GT(account.notes.lost, 0u);
  for (const console::Loss& loss : account.losses) EXPECT_EQ(loss.stage, "decrypt");
}

TEST_F(VerifySystemTest, ARunThatCouldNotOpenItsDatabaseIsIncomplete) {
  run_.Export(L"none.nsf", {L"-archive"});
  const Account account = VerifyHere();
  EXPECT_EQ(Told(account), (Lines{"missing acl.dxl", "missing db.dxl", "missing idtable.txt",
                                  "incomplete audit.txt"}));
}

TEST_F(VerifySystemTest, ACrashInTheEndOfTheRuntimeIsAWarning) {
  run_.AddDatabase(L"few.nsf", kOneDocument);
  run_.SetFaults(R"([{"entry": "NotesTerm", "action": "accessViolation"}])");
  run_.Export(L"few.nsf", {L"-archive"});
  const Account account = VerifyHere();
  EXPECT_EQ(Told(account), Lines());
  ASSERT_EQ(account.warnings.size(), 1u);
  EXPECT_EQ(account.warnings[0].kind, "error-line");
  EXPECT_EQ(Verify({L"--quiet"}).exitCode, 0u);
}

TEST_F(VerifySystemTest, NotesThatAStoppedRunLeftOutAreUnaccounted) {
  run_.AddDatabase(L"few.nsf", kOneDocument);
  // A busy machine takes its time to see that there is no pipe.
  run_.SetFaults(R"([{"entry": "NSFDbOpen", "wait": 5000}])");
  run_.Export(L"few.nsf", {L"-archive", L"-pipe", L"0"});
  EXPECT_EQ(Told(VerifyHere()), (Lines{"unaccounted 00000902", "incomplete audit.txt"}));
  EXPECT_EQ(Verify({L"--quiet"}).exitCode, 5u);
}

TEST_F(VerifySystemTest, AUsedFolderContradictsItself) {
  run_.AddDatabase(L"few.nsf", kOneDocument);
  run_.Export(L"few.nsf", {L"-archive"});
  run_.Export(L"few.nsf", {L"-archive"});
  EXPECT_EQ(Told(VerifyHere()),
            (Lines{"contradiction data/00000902.dxl", "contradiction acl.dxl"}));
}

TEST_F(VerifySystemTest, SaysInWordsWhatCameOut) {
  run_.Export(L"crash-middle.nsf", {L"-archive"});
  const ProgramResult result = Verify();
  EXPECT_EQ(result.exitCode, 3u);
  EXPECT_TRUE(result.standardOutput.starts_with("1 of 5 notes is lost; each loss is listed.\n"))
      << result.standardOutput;
  EXPECT_NE(result.standardOutput.find("  0000090A  note        crash     a worker died at it\n"),
            std::string::npos);
  EXPECT_EQ(result.standardOutput.find('\r'), std::string::npos);
}

TEST_F(VerifySystemTest, SaysItToMachinesInOneLine) {
  run_.Export(L"crash-middle.nsf", {L"-archive"});
  const ProgramResult result = Verify({L"--json"});
  EXPECT_EQ(result.exitCode, 3u);
  EXPECT_EQ(result.standardOutput.find('\n'), result.standardOutput.size() - 1);
  const nlohmann::json told = nlohmann::json::parse(result.standardOutput);
  EXPECT_EQ(told.at("folder"), WideToUtf8(run_.output()));
  EXPECT_EQ(told.at("verdict"), "losses");
  EXPECT_EQ(told.at("exitCode"), 3);
  EXPECT_EQ(told.at("losses").at(0).at("id"), "0000090A");
}

TEST_F(VerifySystemTest, QuietSaysNothing) {
  run_.Export(L"crash-middle.nsf", {L"-archive"});
  const ProgramResult result = Verify({L"--quiet"});
  EXPECT_EQ(result.exitCode, 3u);
  EXPECT_EQ(result.standardOutput, "");
}

TEST_F(VerifySystemTest, AFolderOfNoExportCannotBeJudged) {
  EXPECT_EQ(Verify().exitCode, 2u);
  const nlohmann::json told = nlohmann::json::parse(Verify({L"--json"}).standardOutput);
  EXPECT_EQ(told.at("verdict"), "none");
  EXPECT_EQ(told.at("exitCode"), 2);
}

TEST_F(VerifySystemTest, ACommandLineThatIsNotUnderstoodIsRefused) {
  EXPECT_EQ(Verify({L"--jsno"}).exitCode, 1u);
  EXPECT_EQ(Verify({L"another"}).exitCode, 1u);
  const std::vector<std::wstring> none = {ProgramFolder() + L"\\larkspan-console.exe", L"verify"};
  EXPECT_EQ(Program(none.front(), BuildCommandLine(none)).WaitForEnd().exitCode, 1u);
}

TEST_F(VerifySystemTest, AFolderInOtherPeoplesLanguagesIsFound) {
  run_.SetOutput(run_.folder() + L"\\\u00C4rger \u65E5\u672C");
  CreateDirectoryW(run_.output().c_str(), nullptr);
  run_.Export(L"empty.nsf", {L"-archive"});
  const ProgramResult result = Verify({L"--json"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(nlohmann::json::parse(result.standardOutput).at("folder"), WideToUtf8(run_.output()));
}

}  // namespace
}  // namespace larkspan::testing
