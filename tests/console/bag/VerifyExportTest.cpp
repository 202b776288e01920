// Folders of exports, sealed, half sealed and not, each judged as what it is.
#include "console/bag/VerifyExport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "console/account/AccountText.h"
#include "console/bag/Seal.h"
#include "console/bag/SealState.h"
#include "console/text/Utf.h"
#include "tests/console/account/HandMadeExport.h"
#include "tests/console/bag/HandMadeBag.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputTree.h"

namespace larkspan::console {
namespace {

// What ends a sealing in this test, as the end of its process would.
struct EndedHere {};

class VerifyExportTest : public ::testing::Test {
 protected:
  void SetUp() override { export_->Write(); }

  void Seal() const { ASSERT_EQ(SealFolder(export_->folder(), {}).code, ExitCode::kWhole); }

  // Ends a sealing before its step of this number. False when it came to its end before.
  bool SealUntil(int step) const {
    SealWatch watch;
    watch.beforeStep = [&] {
      if (--step == 0) throw EndedHere();
    };
    try {
      SealFolder(export_->folder(), watch);
      return false;
    } catch (const EndedHere&) {
      return true;
    }
  }

  std::optional<ExportVerdict> Verify(const VerifyWatch& watch = {}) {
    return VerifyExport(export_->folder(), watch, whyNot_);
  }

  Lines ToldOf() {
    const std::optional<ExportVerdict> verdict = Verify();
    EXPECT_TRUE(verdict) << whyNot_;
    return verdict ? Told(verdict->account) : Lines();
  }

  std::optional<HandMadeExport> export_{std::in_place};
  std::string whyNot_;
};

TEST_F(VerifyExportTest, AnExportThatIsNotSealedIsJudgedAsItIs) {
  const std::optional<ExportVerdict> verdict = Verify();
  ASSERT_TRUE(verdict) << whyNot_;
  EXPECT_EQ(verdict->account.Verdict(), ExitCode::kWhole);
  EXPECT_FALSE(verdict->bag);
  EXPECT_EQ(verdict->files, export_->folder());
}

TEST_F(VerifyExportTest, ASealedExportIsJudgedBelowItsPayload) {
  Seal();
  const std::optional<ExportVerdict> verdict = Verify();
  ASSERT_TRUE(verdict) << whyNot_;
  EXPECT_EQ(verdict->account.Verdict(), ExitCode::kWhole);
  EXPECT_EQ(verdict->account.notes.listed, 6u);
  EXPECT_TRUE(verdict->account.warnings.empty());
  ASSERT_TRUE(verdict->bag);
  EXPECT_TRUE(verdict->bag->IsValid());
  EXPECT_TRUE(Exists(verdict->files + L"\\idtable.txt"));
  EXPECT_EQ(SealedText(*verdict->bag), "The folder is sealed. The bag is valid.");
}

TEST_F(VerifyExportTest, LossesOfASealedExportAreLosses) {
  export_->Note(0x902).hasFile = false;
  export_->log = {"#WARNING# - Major: Error opening note 00000902 (Note has been deleted)"};
  export_->Write();
  export_->Remove("data/00000902.dxl");
  ASSERT_EQ(SealFolder(export_->folder(), {}).code, ExitCode::kLosses);
  EXPECT_EQ(ToldOf(), (Lines{"lost note 00000902 open Note has been deleted"}));
}

TEST_F(VerifyExportTest, ALetterWithinATextIsNoticedBySumsAlone) {
  Seal();
  export_->Replace("data/data/00000902.dxl", "Some text", "Same text");
  EXPECT_EQ(ToldOf(), (Lines{"bag-sum data/data/00000902.dxl"}));
  EXPECT_EQ(Verify()->account.Verdict(), ExitCode::kIncomplete);
}

TEST_F(VerifyExportTest, FindingsNameFilesAsTheyLieInTheFolder) {
  Seal();
  export_->Replace("data/data/00000902.dxl", "</document>", "");
  const std::optional<ExportVerdict> verdict = Verify();
  ASSERT_TRUE(verdict);
  const std::vector<Finding>& findings = verdict->account.findings;
  ASSERT_EQ(findings.size(), 3u);
  EXPECT_EQ(findings[0].kind, "not-well-formed");
  EXPECT_EQ(findings[0].file, "data/data/00000902.dxl");
  EXPECT_TRUE(findings[0].text.starts_with("data/data/00000902.dxl is not well-formed"))
      << findings[0].text;
  EXPECT_EQ(findings[1].kind, "bag-oxum");
  EXPECT_EQ(findings[2].kind, "bag-sum");
}

TEST_F(VerifyExportTest, AFileThatIsGoneIsMissingInBoth) {
  Seal();
  export_->Remove("data/data/00000902.dxl");
  const Lines told = ToldOf();
  EXPECT_TRUE(std::count(told.begin(), told.end(), "unaccounted 00000902")) << told.front();
  EXPECT_TRUE(std::count(told.begin(), told.end(), "bag-missing data/data/00000902.dxl"));
}

TEST_F(VerifyExportTest, WarningsOfTheBagAreWarnings) {
  Seal();
  DeleteFileW((export_->folder() + L"\\tagmanifest-sha256.txt").c_str());
  export_->WriteFile("manifest-sha256.txt", export_->ReadFile("manifest-sha256.txt") + "\n");
  const std::optional<ExportVerdict> verdict = Verify();
  ASSERT_TRUE(verdict) << whyNot_;
  EXPECT_EQ(verdict->account.Verdict(), ExitCode::kWhole);
  ASSERT_EQ(verdict->account.warnings.size(), 1u);
  EXPECT_EQ(verdict->account.warnings[0].kind, "bag-uneven");
  EXPECT_EQ(SealedText(*verdict->bag), "The folder is sealed. The bag is valid; 1 warning.");
}

TEST_F(VerifyExportTest, ABagThatLostItsExportIsNotAccountedFor) {
  Seal();
  for (const char* name : {"data/idtable.txt", "data/audit.txt"}) export_->Remove(name);
  const Lines told = ToldOf();
  EXPECT_EQ(told, (Lines{"missing ", "bag-oxum bag-info.txt", "bag-missing data/audit.txt",
                         "bag-missing data/idtable.txt"}));
}

TEST_F(VerifyExportTest, AValidBagOfSomethingElseIsNothingToJudge) {
  const HandMadeBag bag;
  EXPECT_FALSE(VerifyExport(bag.folder(), {}, whyNot_));
  EXPECT_EQ(whyNot_, "The bag is valid and holds no export. 'verify --bag-only' judges any bag.");
}

TEST_F(VerifyExportTest, AFolderOfNothingIsNothingToJudge) {
  EXPECT_FALSE(VerifyExport(export_->folder() + L"\\none", {}, whyNot_));
  EXPECT_EQ(whyNot_, "There is no such folder.");
}

TEST_F(VerifyExportTest, AHalfSealedFolderIsToldAtEachStepAndLeft) {
  // Before the second step there is only an empty folder more.
  int told = 0;
  for (int step = 3;; ++step) {
    export_.emplace();
    export_->Write();
    if (!SealUntil(step)) break;
    const testing::OutputTree before = testing::ReadOutputTree(export_->folder());
    EXPECT_FALSE(Verify()) << step;
    EXPECT_EQ(
        whyNot_,
        "A sealing was interrupted there; call 'larkspan-console seal' again, and it goes on.")
        << step;
    EXPECT_EQ(testing::DescribeDifferences(before, testing::ReadOutputTree(export_->folder())), "");
    ++told;
  }
  EXPECT_GT(told, 12);
}

TEST_F(VerifyExportTest, BeforeTheFirstMoveItIsStillTheExport) {
  ASSERT_TRUE(SealUntil(2));
  EXPECT_EQ(ToldOf(), Lines());
}

TEST_F(VerifyExportTest, APageBesideTheListsDoesNotHideThatASealingWasInterrupted) {
  Seal();
  DeleteFileW((export_->folder() + L"\\bagit.txt").c_str());
  export_->WriteFile("page.html", "x");
  EXPECT_NE(WhySealIsUnfinished(export_->folder()), "");
}

TEST_F(VerifyExportTest, AFolderAboveExportsIsNoHalfSealedOne) {
  const TempFolder above;
  ASSERT_TRUE(MoveFileExW(export_->folder().c_str(), (above / L"\\data").c_str(), 0));
  MakeFolder(above / L"\\other");
  EXPECT_EQ(WhySealIsUnfinished(above.path()), "");
  EXPECT_FALSE(VerifyExport(above.path(), {}, whyNot_));
  EXPECT_TRUE(whyNot_.starts_with("This is no output folder")) << whyNot_;
  ASSERT_TRUE(MoveFileExW((above / L"\\data").c_str(), export_->folder().c_str(), 0));
}

TEST_F(VerifyExportTest, IsBrokenOffWhileSumsAreCalculatedOrFilesAreRead) {
  Seal();
  const FileProgress stop = [](std::uint64_t, std::uint64_t) { return false; };
  EXPECT_FALSE(Verify({stop, {}}));
  EXPECT_EQ(whyNot_, "The check was broken off.");
  whyNot_.clear();
  EXPECT_FALSE(Verify({{}, stop}));
  EXPECT_EQ(whyNot_, "The check was broken off.");
}

TEST_F(VerifyExportTest, EachOfManyFlippedBytesIsNoticed) {
  Seal();
  std::vector<std::pair<std::string, std::string>> files;
  for (const auto& [name, content] : testing::ReadOutputTree(export_->folder()))
    if (!name.ends_with('/')) files.emplace_back(name, content);
  std::mt19937 random(20261122);
  for (int i = 0; i < 300; ++i) {
    const auto& [name, content] = files[random() % files.size()];
    std::string flipped = content;
    const std::size_t place = random() % content.size();
    flipped[place] = static_cast<char>(flipped[place] ^ static_cast<char>(1 << random() % 8));
    export_->WriteFile(name, flipped);
    // A digit of a sum may become its capital, which is a warning: the sum is the same.
    const std::optional<ExportVerdict> verdict = Verify();
    EXPECT_TRUE(verdict && (verdict->account.Verdict() == ExitCode::kIncomplete ||
                            !verdict->account.warnings.empty()))
        << name << " at " << place << ", " << i;
    export_->WriteFile(name, content);
  }
  EXPECT_EQ(ToldOf(), Lines());
}

TEST(SealedAccountTextTest, HasTheLineOfTheBagBelowTheVerdict) {
  Account account;
  account.findings = {{"bag-outside-payload", std::nullopt, "a", "a is not below data/"}};
  const std::string text = AccountText(account, "The folder is sealed.");
  EXPECT_TRUE(text.starts_with(
      "Not accounted for: 1 thing is not as it must be.\nThe folder is sealed.\n\n"))
      << text;
  EXPECT_NE(text.find("  bag-outside-payload a is not below data/\n"), text.npos) << text;
}

}  // namespace
}  // namespace larkspan::console
