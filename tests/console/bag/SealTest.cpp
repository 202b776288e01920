// Folders of exports that become bags: which do, what they are then, and what is left when the
// sealing is ended at any of its steps.
#include "console/bag/Seal.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <string>
#include <utility>

#include "console/account/Outcome.h"
#include "console/bag/SealState.h"
#include "console/text/Utf.h"
#include "tests/console/account/ExampleOutcome.h"
#include "tests/console/account/HandMadeExport.h"
#include "tests/console/bag/HandMadeBag.h"
#include "tests/faults/FileFaults.h"
#include "tests/support/FileBytes.h"
#include "tests/support/OutputTree.h"
#include "tests/support/PauseRecorder.h"

namespace larkspan::console {
namespace {

using testing::OutputTree;
using testing::ReadOutputTree;

// What a process does that is ended by force.
struct Ended {};

Outcome FinishedOutcome(ExitCode code) {
  Outcome outcome = RunningOutcome();
  outcome.state = Outcome::State::kEnded;
  outcome.exitCode = code;
  outcome.archive = true;
  return outcome;
}

// What a seal makes of the export's tree, without the lists.
OutputTree BelowData(const OutputTree& tree) {
  OutputTree below = {{"data/", ""}};
  for (const auto& [name, content] : tree) below["data/" + name] = content;
  return below;
}

OutputTree WithoutLists(OutputTree tree) {
  for (const char* list :
       {"bagit.txt", "bag-info.txt", "manifest-sha256.txt", "tagmanifest-sha256.txt"})
    tree.erase(list);
  return tree;
}

class SealTest : public ::testing::Test {
 protected:
  void WriteExport(ExitCode code = ExitCode::kWhole) {
    export_->Write();
    ASSERT_TRUE(WriteOutcome(export_->folder(), FinishedOutcome(code)));
    before_ = Tree();
  }

  OutputTree Tree() const { return ReadOutputTree(export_->folder()); }

  SealResult Seal(const SealWatch& watch = {}) const {
    return SealFolder(export_->folder(), watch);
  }

  void ExpectSealed() const {
    EXPECT_EQ(SealStateOf(export_->folder()), SealState::kSealed);
    EXPECT_EQ(testing::DescribeDifferences(BelowData(before_), WithoutLists(Tree())), "");
    std::string whyNot;
    const std::optional<BagVerdict> verdict = JudgeBag(export_->folder(), {}, whyNot);
    ASSERT_TRUE(verdict) << whyNot;
    EXPECT_TRUE(verdict->IsValid()) << verdict->errors.front().text;
    EXPECT_TRUE(verdict->warnings.empty()) << verdict->warnings.front().text;
  }

  void ExpectRefused(ExitCode code) const {
    const OutputTree before = Tree();
    const SealResult result = Seal();
    EXPECT_EQ(result.code, code);
    EXPECT_TRUE(result.reason.ends_with(".")) << result.reason;
    EXPECT_EQ(testing::DescribeDifferences(before, Tree()), "");
  }

  std::optional<HandMadeExport> export_{std::in_place};
  OutputTree before_;
};

TEST_F(SealTest, AWholeExportBecomesAValidBag) {
  WriteExport();
  const SealResult result = Seal();
  EXPECT_EQ(result.code, ExitCode::kWhole) << result.reason;
  EXPECT_FALSE(result.wasSealed);
  ExpectSealed();
  const OutputTree bag = Tree();
  EXPECT_EQ(bag.at("bagit.txt"), "BagIt-Version: 1.0\nTag-File-Character-Encoding: UTF-8\n");
  EXPECT_TRUE(bag.contains("data/data/00000902.dxl"));
  EXPECT_TRUE(bag.contains("data/outcome.json"));
}

TEST_F(SealTest, TheBagTellsWhereItComesFrom) {
  WriteExport();
  const SealResult result = Seal();
  const std::string info = Tree().at("bag-info.txt");
  for (const char* line :
       {"Bag-Software-Agent: larkspan-console " LARKSPAN_VERSION "\n", "\nBagging-Date: 20",
        "\nExternal-Identifier: sample.nsf\n", "\nExport-User: CN=Ada Quill/O=Example\n",
        "\nNotes-Listed: 6\n", "\nNotes-Exported: 6\n", "\nNotes-Lost: 0\n"}) {
    EXPECT_NE(info.find(line), info.npos) << line << "\n" << info;
  }
  EXPECT_NE(info.find("\nPayload-Oxum: " + std::to_string(result.payloadBytes) + "." +
                      std::to_string(result.payloadFiles) + "\n"),
            info.npos);
}

TEST_F(SealTest, APlainExportBecomesOneToo) {
  export_.emplace(HandMadeExport::Form::kPlain);
  export_->Write();
  before_ = Tree();
  EXPECT_EQ(Seal().code, ExitCode::kWhole);
  ExpectSealed();
}

TEST_F(SealTest, LossesStayLosses) {
  export_->Note(0x902).hasFile = false;
  export_->log = {"#WARNING# - Major: Error opening note 00000902 (Note has been deleted)"};
  WriteExport(ExitCode::kLosses);
  EXPECT_EQ(Seal().code, ExitCode::kLosses);
  ExpectSealed();
  EXPECT_EQ(Seal().code, ExitCode::kLosses);
}

TEST_F(SealTest, AnExportWithoutOutcomeBecomesOneToo) {
  export_->Write();
  before_ = Tree();
  EXPECT_EQ(Seal().code, ExitCode::kWhole);
  ExpectSealed();
}

TEST_F(SealTest, ASealedFolderIsOnlyJudged) {
  WriteExport();
  Seal();
  const OutputTree bag = Tree();
  const SealResult again = Seal();
  EXPECT_EQ(again.code, ExitCode::kWhole) << again.reason;
  EXPECT_TRUE(again.wasSealed);
  EXPECT_EQ(testing::DescribeDifferences(bag, Tree()), "");
}

TEST_F(SealTest, ADamagedBagIsToldAndLeft) {
  WriteExport();
  Seal();
  export_->WriteFile("data/data/00000902.dxl", "other");
  ExpectRefused(ExitCode::kIncomplete);
}

TEST_F(SealTest, ABagOfSomethingElseIsNoExport) {
  const HandMadeBag bag;
  const SealResult result = SealFolder(bag.folder(), {});
  EXPECT_EQ(result.code, ExitCode::kCouldNotRun);
  EXPECT_NE(result.reason, "");
}

TEST_F(SealTest, AnExportThatRunsIsLeft) {
  export_->Write();
  ASSERT_TRUE(WriteOutcome(export_->folder(), RunningOutcome()));
  ExpectRefused(ExitCode::kCouldNotRun);
}

TEST_F(SealTest, AnExportThatDidNotSucceedIsLeft) {
  WriteExport(ExitCode::kIncomplete);
  ExpectRefused(ExitCode::kIncomplete);
}

TEST_F(SealTest, AnExportThatIsNotAccountedForIsLeft) {
  WriteExport();
  export_->Remove("data/00000902.dxl");
  ExpectRefused(ExitCode::kIncomplete);
}

TEST_F(SealTest, AFolderOfNoExportIsLeft) { ExpectRefused(ExitCode::kCouldNotRun); }

TEST_F(SealTest, AFolderThatIsNotThereCannotBeSealed) {
  EXPECT_EQ(SealFolder(export_->folder() + L"\\none", {}).code, ExitCode::kCouldNotRun);
}

TEST_F(SealTest, AFolderOfSomebodyElseBesideTheExportIsLeft) {
  WriteExport();
  MakeFolder(export_->folder() + L"\\mine");
  ExpectRefused(ExitCode::kCouldNotRun);
}

TEST_F(SealTest, AStageOfSomebodyElseIsLeft) {
  WriteExport();
  export_->WriteFile("data.new/letter.txt", "mine");
  ExpectRefused(ExitCode::kCouldNotRun);
}

TEST_F(SealTest, AFolderAboveAnExportIsLeft) {
  WriteExport();
  const std::wstring outer = export_->folder() + L"-outer";
  MakeFolder(outer);
  ASSERT_TRUE(MoveFileExW(export_->folder().c_str(), (outer + L"\\data").c_str(), 0));
  WriteBytes(outer + L"\\letter.txt", "mine");
  EXPECT_EQ(SealFolder(outer, {}).code, ExitCode::kCouldNotRun);
  ASSERT_TRUE(MoveFileExW((outer + L"\\data").c_str(), export_->folder().c_str(), 0));
  DeleteFileW((outer + L"\\letter.txt").c_str());
  EXPECT_TRUE(RemoveDirectoryW(outer.c_str()));
}

TEST_F(SealTest, FilesOfTheSystemStayBesideThePayload) {
  WriteExport();
  export_->WriteFile("desktop.ini", "x");
  EXPECT_EQ(Seal().code, ExitCode::kWhole);
  EXPECT_EQ(export_->ReadFile("desktop.ini"), "x");
  EXPECT_EQ(Seal().code, ExitCode::kWhole);
}

// Ends a sealing before its step of this number. False when it came to its end before.
bool EndAtStep(const std::wstring& folder, int step) {
  SealWatch watch;
  watch.beforeStep = [&] {
    if (--step == 0) throw Ended();
  };
  try {
    SealFolder(folder, watch);
    return false;
  } catch (const Ended&) {
    return true;
  }
}

TEST_F(SealTest, ASealingThatIsEndedAtAnyStepIsTakenUpAgain) {
  int step = 1;
  for (bool isEnded = true; isEnded; ++step) {
    export_.emplace();
    WriteExport();
    isEnded = EndAtStep(export_->folder(), step);
    EXPECT_NE(SealStateOf(export_->folder()) == SealState::kSealed, isEnded) << step;
    const SealResult result = Seal();
    EXPECT_EQ(result.code, ExitCode::kWhole) << step << ": " << result.reason;
    ExpectSealed();
  }
  EXPECT_GT(step, 15);
}

TEST_F(SealTest, ASealingThatIsEndedAgainAndAgainGoesOn) {
  WriteExport();
  int ends = 0;
  while (EndAtStep(export_->folder(), 2 + ends)) ++ends;
  EXPECT_GT(ends, 3);
  EXPECT_EQ(Seal().code, ExitCode::kWhole);
  ExpectSealed();
}

TEST_F(SealTest, UntilTheLastOfItIsMovedTheFolderSaysThatItIsFinished) {
  for (int step = 1;; ++step) {
    export_.emplace();
    WriteExport();
    if (!EndAtStep(export_->folder(), step)) break;
    Outcome outcome;
    const bool saysSo = ReadOutcome(export_->folder(), outcome) == OutcomeReading::kRead;
    const bool holdsMore = Exists(export_->folder() + L"\\idtable.txt");
    EXPECT_TRUE(saysSo || !holdsMore) << step;
  }
}

TEST_F(SealTest, WhatWasChangedWhileItWasMovedIsNoticed) {
  WriteExport();
  ASSERT_TRUE(EndAtStep(export_->folder(), 5));
  export_->WriteFile("data.new/data/00000902.dxl", "other");
  const SealResult result = Seal();
  EXPECT_EQ(result.code, ExitCode::kIncomplete);
  EXPECT_EQ(SealStateOf(export_->folder()), SealState::kMoved);
}

// A watch that lets so many calls pass.
FileProgress StopsAfter(int calls) {
  return [calls](std::uint64_t, std::uint64_t) mutable { return calls-- > 0; };
}

TEST_F(SealTest, StoppedWhileTheExportIsAccountedForItChangesNothing) {
  WriteExport();
  const SealResult result = Seal({StopsAfter(0), {}, {}});
  EXPECT_EQ(result.code, ExitCode::kStopped);
  EXPECT_EQ(result.reason, "The sealing was stopped; nothing was changed.");
  EXPECT_EQ(testing::DescribeDifferences(before_, Tree()), "");
}

TEST_F(SealTest, StoppedWhileSumsAreCalculatedItGoesOnWhenItIsCalledAgain) {
  WriteExport();
  for (const int calls : {0, 1}) {
    const SealResult result = Seal({{}, StopsAfter(calls), {}});
    EXPECT_EQ(result.code, ExitCode::kStopped);
    EXPECT_EQ(SealStateOf(export_->folder()), SealState::kMoved);
    EXPECT_EQ(result.reason, calls == 0 ? "The sealing was stopped. Call it again, and it goes on."
                                        : "The sealing was stopped; nothing was changed.");
  }
  EXPECT_EQ(Seal().code, ExitCode::kWhole);
  ExpectSealed();
}

TEST_F(SealTest, AJudgementThatIsStoppedSaysSo) {
  WriteExport();
  Seal();
  for (const SealWatch& watch :
       {SealWatch{{}, StopsAfter(0), {}}, SealWatch{StopsAfter(0), {}, {}}}) {
    const SealResult result = Seal(watch);
    EXPECT_EQ(result.code, ExitCode::kStopped);
    EXPECT_EQ(result.reason, "The check was broken off.");
  }
  ExpectSealed();
}

class SealFaultTest : public SealTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(SealFaultTest, WhatTheSystemRefusesIsToldAndTakenUpAgain) {
  WriteExport();
  {
    const PauseRecorder pauses;
    const FileFaults faults(GetParam());
    const SealResult result = Seal();
    EXPECT_TRUE(result.code == ExitCode::kCouldNotRun || result.code == ExitCode::kIncomplete);
    EXPECT_NE(result.reason, "");
    EXPECT_NE(SealStateOf(export_->folder()), SealState::kSealed);
  }
  EXPECT_EQ(Seal().code, ExitCode::kWhole);
  ExpectSealed();
}

INSTANTIATE_TEST_SUITE_P(
    Faults, SealFaultTest,
    ::testing::Values("folder data.new * accessDenied", "move data * sharingViolation",
                      "move design * sharingViolation", "move outcome.json * sharingViolation",
                      "move data 2- accessDenied", "open manifest-sha256.txt.new * accessDenied",
                      "write manifest-sha256.txt.new * diskFull", "write bagit.txt.new 1 noError 5",
                      "flush bag-info.txt.new * diskFull",
                      "close tagmanifest-sha256.txt.new * diskFull",
                      "move tagmanifest-sha256.txt * sharingViolation",
                      "move bagit.txt * accessDenied"));

TEST_F(SealTest, AScannerThatHoldsAFileForAWhileDoesNotHinder) {
  WriteExport();
  const PauseRecorder pauses;
  const FileFaults faults("move data 1-7 sharingViolation; move bagit.txt 1-3 sharingViolation");
  EXPECT_EQ(Seal().code, ExitCode::kWhole);
  EXPECT_EQ(pauses.pauses().size(), 10u);
  ExpectSealed();
}

}  // namespace
}  // namespace larkspan::console
