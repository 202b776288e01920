// What the log says beside the notes, and what the export's own record says.
#include <gtest/gtest.h>

#include "console/account/Outcome.h"
#include "tests/console/account/ExampleOutcome.h"
#include "tests/console/account/HandMadeExport.h"

namespace larkspan::console {
namespace {

class RunChecksTest : public ::testing::Test {
 protected:
  Account Verify() {
    export_.Write();
    return export_.Verify();
  }

  HandMadeExport export_;
};

TEST_F(RunChecksTest, AnErrorOfARunThatCameToItsEndIsAWarning) {
  export_.log = {"#ERROR# - Child process returned 1 outside a note; the export may be incomplete",
                 "#ERROR# - Child process returned 1 outside a note; the export may be incomplete"};
  const Account account = Verify();
  EXPECT_EQ(Warned(account), Lines{"error-line: Child process returned 1 outside a note; the "
                                   "export may be incomplete (2 times)"});
  EXPECT_EQ(account.Verdict(), ExitCode::kWhole);
}

TEST_F(RunChecksTest, WarningsThatNameNoNoteAreToldOnce) {
  export_.log = {"#WARNING# - Unable to write views\\00000106.xml",
                 "#WARNING# - Unable to read database quota (a)",
                 "#DEBUG# - Retrying delete DXL temporary file: 1",
                 "#WARNING# - Unable to write views\\00000106.xml"};
  EXPECT_EQ(Warned(Verify()), (Lines{"log: Unable to write views\\00000106.xml (2 times)",
                                     "log: Unable to read database quota (a)"}));
}

TEST_F(RunChecksTest, VeryManyTextsAreCountedInTheEnd) {
  for (int i = 0; i < 1005; ++i) export_.log.push_back("#WARNING# - Text " + std::to_string(i));
  const Account account = Verify();
  EXPECT_EQ(account.warnings.size(), 1001u);
  EXPECT_EQ(account.warnings.back().text,
            "5 more WARNING lines, of more than a thousand different texts");
}

TEST_F(RunChecksTest, LinesOfAnotherFormAreAWarning) {
  export_.log = {"garbage", "", "#NOTICE# - x"};
  EXPECT_EQ(Warned(Verify()), Lines{"log: 3 lines of log.txt are not as the program writes them"});
}

TEST_F(RunChecksTest, ALineOfALengthOfItsOwnIsReadOn) {
  export_.log = {std::string(3000000, 'x'),
                 "#WARNING# - Major: Incomplete run detected for note id 00000902"};
  const Account account = Verify();
  EXPECT_EQ(account.notes.wholeDespiteDeath, 1u);
}

TEST_F(RunChecksTest, ALineOfANoteThatIsNotListedIsAFinding) {
  export_.log = {"#WARNING# - Major: Error opening note 00000904 (a)",
                 "#WARNING# - Minor: Detected corrupt document 00000908, exported without images",
                 "#WARNING# - Major: Incomplete run detected for note id 0000090C"};
  const Account account = Verify();
  EXPECT_EQ(Told(account),
            (Lines{"unknown-note log.txt", "unknown-note log.txt", "unknown-note log.txt"}));
  EXPECT_EQ(account.findings[1].id, 0x908u);
}

TEST_F(RunChecksTest, ALineThatNamesNoNoteIsAFinding) {
  export_.log = {"#WARNING# - Major: Error opening note 0000090 (a)",
                 "#WARNING# - Minor: Something"};
  EXPECT_EQ(Told(Verify()), (Lines{"unknown-note log.txt", "unknown-note log.txt"}));
}

TEST_F(RunChecksTest, AMissingAclIsALossWithItsLineAlone) {
  export_.log = {"#WARNING# - Error exporting ACL (Notes error 585)"};
  export_.Write();
  export_.Remove("acl.dxl");
  EXPECT_EQ(Told(export_.Verify()), Lines{"lost acl acl Notes error 585"});
  export_.Remove("log.txt");
  EXPECT_EQ(Told(export_.Verify()), Lines{"missing acl.dxl"});
}

TEST_F(RunChecksTest, AnAclBesideItsLineIsAContradiction) {
  export_.log = {"#WARNING# - Error exporting ACL (Notes error 585)"};
  EXPECT_EQ(Told(Verify()), Lines{"contradiction acl.dxl"});
}

class RecordedExportTest : public RunChecksTest {
 protected:
  // An outcome.json with the account of what is there.
  void Record() {
    export_.Write();
    outcome_.state = Outcome::State::kEnded;
    outcome_.archive = export_.archive;
    outcome_.account = export_.Verify();
    WriteRecord();
  }

  void WriteRecord() const { ASSERT_TRUE(WriteOutcome(export_.folder(), outcome_)); }

  Outcome outcome_ = RunningOutcome();
};

TEST_F(RecordedExportTest, AgreesWithItself) {
  Record();
  EXPECT_EQ(Told(export_.Verify()), Lines());
  EXPECT_EQ(Warned(export_.Verify()), Lines());
}

TEST_F(RecordedExportTest, WhatIsGoneIsMissing) {
  Record();
  const Lines names = {"acl.dxl", "db.dxl", "design2/00000102.dxl", "views/00000106.xml"};
  for (const std::string& name : names) {
    const std::string bytes = export_.ReadFile(name);
    export_.Remove(name);
    EXPECT_EQ(Told(export_.Verify()), Lines{"missing " + name});
    export_.WriteFile(name, bytes);
  }
}

TEST_F(RecordedExportTest, WhatHasAnotherSizeIsChanged) {
  Record();
  const Lines names = {"acl.dxl", "db.dxl", "design2/00000102.dxl", "views/00000106.xml"};
  for (const std::string& name : names) {
    const std::string bytes = export_.ReadFile(name);
    export_.WriteFile(name, bytes + " ");
    EXPECT_EQ(Told(export_.Verify()), Lines{"changed " + name});
    export_.WriteFile(name, bytes);
  }
}

TEST_F(RecordedExportTest, WhatCameLaterIsUnknown) {
  Record();
  export_.WriteFile("views/00000102.xml", "<view/>");
  export_.WriteFile("design2/00000106.dxl", NoteDxl(0x106));
  EXPECT_EQ(Told(export_.Verify()),
            (Lines{"unknown-file views/00000102.xml", "unknown-file design2/00000106.dxl"}));
}

TEST_F(RecordedExportTest, AnAclOfAnEarlierRunIsNoContradiction) {
  export_.log = {"#WARNING# - Error exporting ACL (Notes error 585)"};
  Record();
  EXPECT_EQ(Told(export_.Verify()), Lines());
}

TEST_F(RecordedExportTest, ItsViewsThatWereLostAreLosses) {
  outcome_.lostViews = {{LossKind::kView, 0x102, "views", "a worker died at it"},
                        {LossKind::kView, std::nullopt, "views", "2 views were not reached"}};
  Record();
  const Account account = export_.Verify();
  EXPECT_EQ(Told(account), (Lines{"lost view 00000102 views a worker died at it",
                                  "lost view views 2 views were not reached"}));
}

TEST_F(RecordedExportTest, AWorkerThatHungIsToldSo) {
  export_.Note(0x902).hasFile = false;
  export_.log = {"#WARNING# - Major: Incomplete run detected for note id 00000902"};
  outcome_.restarts = {{"2026-11-22T07:44:00Z", 0x902, "stall"}};
  Record();
  EXPECT_EQ(Told(export_.Verify()),
            Lines{"lost note 00000902 stall the worker hung at it and was ended"});
}

TEST_F(RecordedExportTest, ItsCountsAreNotBelieved) {
  Record();
  outcome_.account->notes.lost = 5;
  outcome_.account->losses.push_back({LossKind::kNote, 0x902, "open", "a"});
  outcome_.exitCode = ExitCode::kLosses;
  WriteRecord();
  EXPECT_EQ(export_.Verify().Verdict(), ExitCode::kWhole);
}

TEST_F(RecordedExportTest, OneThatRunsOrWasStoppedIsAWarning) {
  Record();
  outcome_.state = Outcome::State::kRunning;
  outcome_.stop = Stop{"2026-11-22T07:49:00Z", "user"};
  WriteRecord();
  EXPECT_EQ(Warned(export_.Verify()),
            (Lines{"running: outcome.json says that the export is still running, or it was cut off",
                   "stopped: the export was stopped by user at 2026-11-22T07:49:00Z"}));
}

TEST_F(RecordedExportTest, OneThatIsDamagedIsAFinding) {
  export_.Write();
  export_.WriteFile("outcome.json", "{\"state\": \"ended\"}");
  EXPECT_EQ(Told(export_.Verify()), Lines{"outcome outcome.json"});
}

TEST_F(RecordedExportTest, SaysWhetherItIsAnArchive) {
  export_.notes = {{.id = 0x102, .folder = L""}};
  export_.archive = false;
  Record();
  export_.WriteFile("data/x", "x");
  EXPECT_EQ(Told(export_.Verify()), Lines{"unknown-file data/x"});
  export_.Remove("outcome.json");
  EXPECT_TRUE(export_.Verify().archive);
}

}  // namespace
}  // namespace larkspan::console
