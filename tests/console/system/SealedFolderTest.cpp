// A sealed folder is a finished export to every command, and a half sealed one to none.
#include <filesystem>

#include "tests/console/system/ExportTest.h"

namespace larkspan::console {
namespace {

using testing::DocumentsJson;
using testing::FaultsMember;
using testing::OutputTree;

class SealedFolderTest : public ExportTest {
 protected:
  // An export with a loss, so that its code is not that of anything else.
  void ExportSealed(const Words& more = {}) {
    run_.AddDatabase(
        database_,
        DocumentsJson(
            3, FaultsMember(R"({"entry": "NSFNoteOpen", "note": "00000906", "status": 546})")));
    ASSERT_EQ(Export(more).code, 3u);
    ASSERT_EQ(Run({L"seal", out_}).code, 3u);
    before_ = testing::ReadOutputTree(out_);
  }

  // As a sealing that was ended behind the move leaves it.
  void Unfinish() {
    std::filesystem::remove(out_ + L"\\bagit.txt");
    before_ = testing::ReadOutputTree(out_);
  }

  void ExpectUnchanged() const {
    EXPECT_EQ(testing::DescribeDifferences(before_, testing::ReadOutputTree(out_)), "");
    EXPECT_FALSE(Exists(out_ + L".attempt-1"));
  }

  void ExpectFinishedBefore(const Words& more) const {
    const ConsoleEnd end = Export(more);
    EXPECT_EQ(end.code, 3u) << end.output << end.errors;
    EXPECT_TRUE(Holds(end.output, "This export was finished before.")) << end.output;
    EXPECT_TRUE(Holds(end.output, "2 of 3 notes exported")) << end.output;
    ExpectUnchanged();
  }

  void ExpectInterrupted(const Words& words) const {
    const ConsoleEnd end = Run(words);
    EXPECT_EQ(end.code, 2u);
    EXPECT_TRUE(Holds(end.output + end.errors,
                      "A sealing was interrupted there; call 'larkspan-console seal' again"))
        << end.output << end.errors;
    ExpectUnchanged();
  }

  void FlipByte(const std::wstring& name) const {
    std::string bytes = ReadBytes(out_ + name);
    bytes[bytes.size() / 2] ^= 1;
    WriteBytes(out_ + name, bytes);
  }

  OutputTree before_;
};

TEST_F(SealedFolderTest, VerifyAccountsForItAndJudgesItsBag) {
  ExportSealed();
  const ConsoleEnd end = Run({L"verify", out_});
  EXPECT_EQ(end.code, 3u);
  EXPECT_TRUE(
      end.output.starts_with("1 of 3 notes is lost; each loss is listed.\n"
                             "The folder is sealed. The bag is valid.\n\n"))
      << end.output;
  ExpectUnchanged();
}

TEST_F(SealedFolderTest, VerifyNoticesAFlippedByteByItsSum) {
  ExportSealed();
  FlipByte(L"\\data\\outcome.json");
  const ConsoleEnd end = Run({L"verify", out_});
  EXPECT_EQ(end.code, 5u);
  EXPECT_TRUE(Holds(end.output, "\nThe folder is sealed. The bag is not valid: 1 error.\n"))
      << end.output;
  EXPECT_TRUE(Holds(end.output, "bag-sum          data/outcome.json has another content"))
      << end.output;
}

TEST_F(SealedFolderTest, VerifySaysItToMachines) {
  ExportSealed();
  Json told = Json::parse(Run({L"verify", L"--json", out_}).output);
  EXPECT_EQ(told.at("verdict"), "losses");
  EXPECT_EQ(told.at("exitCode"), 3);
  EXPECT_EQ(told.at("bag").at("valid"), true);
  EXPECT_EQ(told.at("bag").at("version"), "1.0");
  FlipByte(L"\\bag-info.txt");
  told = Json::parse(Run({L"verify", L"--json", out_}).output);
  EXPECT_EQ(told.at("verdict"), "incomplete");
  EXPECT_EQ(told.at("bag").at("valid"), false);
  EXPECT_TRUE(told.at("findings").back().at("kind").get<std::string>().starts_with("bag-"));
}

TEST_F(SealedFolderTest, AnExportThatIsNotSealedHasNoBagInItsJson) {
  run_.AddDatabase(database_, DocumentsJson(1));
  ASSERT_EQ(Export().code, 0u);
  EXPECT_FALSE(Json::parse(Run({L"verify", L"--json", out_}).output).contains("bag"));
}

TEST_F(SealedFolderTest, TheReportLooksBelowItsPayload) {
  database_ = L"sample.nsf";
  ASSERT_EQ(Export().code, 0u);
  ASSERT_EQ(Run({L"seal", out_}).code, 0u);
  before_ = testing::ReadOutputTree(out_);
  const std::wstring page = run_.folder() + L"\\page.html";
  const ConsoleEnd end = Run({L"report", out_, L"--html", page});
  EXPECT_EQ(end.code, 0u) << end.errors;
  EXPECT_TRUE(Holds(end.output, "\nThe folder is sealed. The bag is valid.\n")) << end.output;
  const std::string html = ReadBytes(page);
  EXPECT_TRUE(Holds(html, "<dt>Sealed</dt><dd dir=\"auto\">The bag is valid.</dd>"));
  EXPECT_TRUE(Holds(html, "<h1 dir=\"auto\">Pflanzenregister / Plant Register</h1>"));
  EXPECT_TRUE(Holds(html, "22 documents \xC2\xB7 28 categories \xC2\xB7 8 totals"));
  ExpectUnchanged();
}

TEST_F(SealedFolderTest, TheReportTellsWhereInTheFolderADamagedFileLies) {
  ExportSealed();
  FlipByte(L"\\data\\db.dxl");
  const std::wstring page = run_.folder() + L"\\page.html";
  EXPECT_EQ(Run({L"report", out_, L"--html", page, L"--quiet"}).code, 5u);
  EXPECT_TRUE(Holds(ReadBytes(page), "data/db.dxl has another content"));
}

TEST_F(SealedFolderTest, APageInThePayloadIsRefusedAndOneBesideTheListsIsNot) {
  ExportSealed();
  const ConsoleEnd refused = Run({L"report", out_, L"--html", out_ + L"\\data\\page.html"});
  EXPECT_EQ(refused.code, 2u);
  EXPECT_TRUE(Holds(refused.errors, "would break its seal")) << refused.errors;
  ExpectUnchanged();
  const ConsoleEnd end = Run({L"report", out_, L"--html", out_ + L"\\page.html"});
  EXPECT_EQ(end.code, 3u);
  EXPECT_EQ(end.errors, "");
  EXPECT_EQ(Run({L"verify", L"--quiet", out_}).code, 3u);
}

TEST_F(SealedFolderTest, ResumeFindsItFinished) {
  ExportSealed();
  ExpectFinishedBefore({L"--resume"});
}

TEST_F(SealedFolderTest, ResumeNeedsNothingButTheFolder) {
  ExportSealed();
  const ConsoleEnd end = Run({L"export", L"--resume", L"--out", out_});
  EXPECT_EQ(end.code, 3u) << end.output << end.errors;
  ExpectUnchanged();
}

TEST_F(SealedFolderTest, AtomicFindsItFinishedWithAndWithoutResume) {
  ExportSealed({L"--atomic"});
  ExpectFinishedBefore({L"--atomic"});
  ExpectFinishedBefore({L"--atomic", L"--resume"});
}

TEST_F(SealedFolderTest, AnotherExportIsNotTakenForIt) {
  ExportSealed();
  EXPECT_EQ(Export({L"--atomic", L"--design-only"}).code, 2u);
  EXPECT_EQ(Export({L"--resume", L"--design-only"}).code, 2u);
  EXPECT_EQ(Export().code, 2u);
  ExpectUnchanged();
}

// The name was not given before the power went, and somebody sealed the attempt.
TEST_F(SealedFolderTest, ASealedAttemptGetsItsNameAndIsNotWrittenTo) {
  ExportSealed();
  const std::wstring attempt = out_ + L".attempt-1";
  std::filesystem::rename(out_, attempt);
  EXPECT_EQ(Export({L"--atomic", L"--resume"}).code, 3u);
  ExpectUnchanged();
}

TEST_F(SealedFolderTest, ASealedAttemptThatIsDamagedGetsNoName) {
  ExportSealed();
  FlipByte(L"\\data\\db.dxl");
  before_ = testing::ReadOutputTree(out_);
  const std::wstring attempt = out_ + L".attempt-1";
  std::filesystem::rename(out_, attempt);
  EXPECT_EQ(Export({L"--atomic", L"--resume"}).code, 5u);
  EXPECT_FALSE(Exists(out_));
  EXPECT_EQ(testing::DescribeDifferences(before_, testing::ReadOutputTree(attempt)), "");
}

TEST_F(SealedFolderTest, ABagOfAnExportThatIsNotFinishedIsNotGoneOnIn) {
  ExportSealed();
  std::string outcome = ReadBytes(out_ + L"\\data\\outcome.json");
  outcome.replace(outcome.find("\"ended\""), 7, "\"running\"");
  WriteBytes(out_ + L"\\data\\outcome.json", outcome);
  before_ = testing::ReadOutputTree(out_);
  const ConsoleEnd end = Export({L"--resume"});
  EXPECT_EQ(end.code, 2u);
  EXPECT_TRUE(Holds(end.output + end.errors, "did not come to its end")) << end.output;
  ExpectUnchanged();
}

TEST_F(SealedFolderTest, AHalfSealedFolderIsToldByEachCommandAndLeft) {
  ExportSealed();
  Unfinish();
  ExpectInterrupted({L"verify", out_});
  ExpectInterrupted({L"verify", L"--json", out_});
  ExpectInterrupted({L"report", out_, L"--html", run_.folder() + L"\\page.html"});
  EXPECT_FALSE(Exists(run_.folder() + L"\\page.html"));
  for (const Words& more : {Words{}, Words{L"--resume"}, Words{L"--atomic"},
                            Words{L"--atomic", L"--resume"}, Words{L"--json"}}) {
    ExpectInterrupted(ExportWords(more));
  }
  EXPECT_EQ(Run({L"seal", out_}).code, 3u);
  EXPECT_EQ(Run({L"verify", out_}).code, 3u);
}

TEST_F(SealedFolderTest, SoIsOneWhoseEntriesWereMovedInPart) {
  run_.AddDatabase(database_, DocumentsJson(2));
  ASSERT_EQ(Export().code, 0u);
  MakeFolder(out_ + L"\\data.new");
  std::filesystem::rename(out_ + L"\\data", out_ + L"\\data.new\\data");
  before_ = testing::ReadOutputTree(out_);
  ExpectInterrupted({L"verify", out_});
  ExpectInterrupted(ExportWords({L"--atomic"}));
  ExpectInterrupted(ExportWords({L"--resume"}));
}

}  // namespace
}  // namespace larkspan::console
