// The one fate of each listed note, from its files and the lines of the log.
#include <gtest/gtest.h>

#include "tests/console/account/HandMadeExport.h"

namespace larkspan::console {
namespace {

class NoteFatesTest : public ::testing::Test {
 protected:
  Account Verify() {
    export_.Write();
    return export_.Verify();
  }

  // The note has no file, and the log has this line.
  void Lose(std::uint32_t id, const std::string& line) {
    export_.Note(id).hasFile = false;
    export_.log.push_back(line);
  }

  HandMadeExport export_;
};

TEST_F(NoteFatesTest, AnExportWithoutALossIsWhole) {
  const Account account = Verify();
  EXPECT_EQ(Told(account), Lines());
  EXPECT_EQ(Warned(account), Lines());
  EXPECT_EQ(account.Verdict(), ExitCode::kWhole);
  EXPECT_EQ(account.notes.listed, 6u);
  EXPECT_EQ(account.notes.exported, 6u);
}

TEST_F(NoteFatesTest, ANoteThatALineNamesIsLostWithItsStageAndCause) {
  export_.Note(0x902).isIndexed = false;
  Lose(0x902, "#WARNING# - Major: Error opening note 00000902 (Note has been deleted)");
  Lose(0x906, "#WARNING# - Major: Error decrypting note 00000906 (No key (at all))");
  Lose(0x90A, "#WARNING# - Major: Error exporting note 0000090A (Notes error 585)");
  Lose(0x90E, "#WARNING# - Major: Incomplete run detected for note id 0000090E");
  const Account account = Verify();
  EXPECT_EQ(Told(account), (Lines{"lost note 00000902 open Note has been deleted",
                                  "lost note 00000906 decrypt No key (at all)",
                                  "lost note 0000090A export Notes error 585",
                                  "lost note 0000090E crash a worker died at it"}));
  EXPECT_EQ(account.notes.lost, 4u);
  EXPECT_EQ(account.notes.exported, 2u);
  EXPECT_EQ(account.Verdict(), ExitCode::kLosses);
}

// Several workers were at work, and what they left is not joined. Of these the first is lost, the
// second has its file, of the third pictures alone are.
TEST_F(NoteFatesTest, ANoteThatIsLostInAPartIsLost) {
  for (const std::string parts : {"parts", "joining", "joined"}) {
    HandMadeExport folder;
    for (const std::uint32_t id : {0x902u, 0x906u, 0x90Au}) folder.Note(id).hasFile = false;
    folder.Note(0x902).isIndexed = false;
    // The log may be joined before the files.
    if (parts == "joined")
      folder.log = {"#WARNING# - Major: Incomplete run detected for note id 00000906"};
    folder.Write();
    const std::string part = parts + "/00000902/";
    folder.WriteFile(part + "log.txt",
                     "#WARNING# - Major: Error exporting note 00000902 (Notes error 585)\r\n"
                     "#WARNING# - Major: Incomplete run detected for note id 00000906\r\n"
                     "#WARNING# - Minor: Detected corrupt document 0000090A\r\n");
    folder.WriteFile(part + "data/00000906.dxl", "whole");
    const Account account = folder.Verify();
    EXPECT_EQ(Told(account),
              (Lines{"lost note 00000902 export Notes error 585", "unaccounted 00000906",
                     "unaccounted 0000090A", "left-over parts"}));
    EXPECT_EQ(account.notes.lost, 1u);
    EXPECT_EQ(account.Verdict(), ExitCode::kIncomplete);
    const std::string why = parts == "joined" ? "is in a part that nobody has joined"
                                              : "has neither a file nor a line in log.txt";
    EXPECT_EQ(account.findings[0].text, "note 00000906 " + why);
  }
}

// The run ended at a design note behind; its line is joined, and so is its log's.
TEST_F(NoteFatesTest, WhatIsHalfJoinedIsReached) {
  export_.Note(0x906).hasFile = false;
  export_.Note(0x90A).hasFile = false;
  export_.Note(0x906).isIndexed = false;
  export_.log = {"#ERROR# - Unable to export design: Design is damaged"};
  export_.Write();
  export_.WriteFile("joined/00000902/data/00000906.dxl", "whole");
  const Account account = export_.Verify();
  EXPECT_EQ(account.losses.size(), 1u);
  EXPECT_EQ(account.losses[0].id, 0x90Au);
  EXPECT_EQ(account.notes.unaccounted, 1u);
  EXPECT_EQ(account.notes.notReached, 1u);
}

TEST_F(NoteFatesTest, ARawCopyThatIsNotJoinedYetIsNotLost) {
  export_.Note(0x902).folder = L"design";
  export_.log.push_back("#WARNING# - Major: Error exporting note 00000902 (Notes error 585)");
  export_.Write();
  EXPECT_EQ(Told(export_.Verify()), Lines{"lost raw copy 00000902 raw copy Notes error 585"});
  export_.WriteFile("joined/00000902/design2/00000902.dxl", "raw");
  EXPECT_EQ(Told(export_.Verify()), Lines{"left-over parts"});
}

TEST_F(NoteFatesTest, ADeathToldManyTimesIsOneLoss) {
  for (int i = 0; i < 3; ++i)
    Lose(0x902, "#WARNING# - Major: Incomplete run detected for note id 00000902");
  EXPECT_EQ(Told(Verify()), Lines{"lost note 00000902 crash a worker died at it"});
}

TEST_F(NoteFatesTest, ANoteWithNeitherFileNorLineIsUnaccounted) {
  export_.Note(0x902).hasFile = false;
  const Account account = Verify();
  EXPECT_EQ(Told(account), Lines{"unaccounted 00000902"});
  EXPECT_EQ(account.notes.unaccounted, 1u);
  EXPECT_EQ(account.Verdict(), ExitCode::kIncomplete);
}

TEST_F(NoteFatesTest, AnUnaccountedNoteBringsTheLastErrorAlong) {
  export_.Note(0x902).hasFile = false;
  export_.log = {"#ERROR# - Unable to read document list", "#ERROR# - Maximum retries exceeded"};
  const Account account = Verify();
  ASSERT_EQ(account.findings.size(), 1u);
  EXPECT_EQ(account.findings[0].text,
            "note 00000902 has neither a file nor a line in log.txt; the log's last ERROR is: "
            "Maximum retries exceeded");
  EXPECT_EQ(Warned(account), Lines{"error-line: Unable to read document list"});
}

struct BreakOff {
  const char* error;
};

class BreakOffTest : public NoteFatesTest, public ::testing::WithParamInterface<BreakOff> {};

TEST_P(BreakOffTest, LeavesNotesUnreached) {
  const std::string error = GetParam().error;
  export_.Note(0x90A).hasFile = export_.Note(0x90E).hasFile = false;
  export_.Note(0x90E).isIndexed = false;
  export_.log = {"#ERROR# - " + error};
  export_.cameToItsEnd = false;
  const Account account = Verify();
  EXPECT_EQ(Told(account),
            (Lines{"lost note 0000090A run " + error, "lost note 0000090E run " + error,
                   "incomplete log.txt", "incomplete audit.txt"}));
  EXPECT_EQ(account.notes.notReached, 2u);
  EXPECT_EQ(account.Verdict(), ExitCode::kIncomplete);
  EXPECT_EQ(Warned(account), Lines());
}

INSTANTIATE_TEST_SUITE_P(
    Errors, BreakOffTest,
    ::testing::Values(BreakOff{"Unable to export design: Design of the database is hidden"},
                      BreakOff{"WriteMarkerFile failed (Permission denied)"}),
    [](const auto& test) { return test.index == 0 ? "Design" : "Marker"; });

TEST_F(NoteFatesTest, AFileOfANoteThatWasNotExportedIsAContradiction) {
  export_.log = {"#WARNING# - Major: Error opening note 00000102 (a)",
                 "#WARNING# - Major: Error decrypting note 00000902 (b)",
                 "#WARNING# - Major: Error exporting note 00000906 (c)",
                 "#WARNING# - Major: Error exporting note 0000090E (d)"};
  const Account account = Verify();
  EXPECT_EQ(Told(account),
            (Lines{"contradiction design/00000102.dxl", "contradiction data/00000902.dxl",
                   "contradiction data/00000906.dxl", "contradiction profile/0000090E.dxl"}));
  EXPECT_EQ(account.notes.contradicted, 4u);
}

TEST_F(NoteFatesTest, ADesignNoteThatWasNotExportedBesideItsFileLacksItsRawCopy) {
  export_.log = {"#WARNING# - Major: Error exporting note 00000106 (Notes error 585)"};
  const Account account = Verify();
  EXPECT_EQ(Told(account), Lines{"lost raw copy 00000106 raw copy Notes error 585"});
  EXPECT_EQ(account.notes.exportedWithLoss, 1u);
}

TEST_F(NoteFatesTest, ADesignNoteWithBothFilesCannotHaveFailed) {
  export_.log = {"#WARNING# - Major: Error exporting note 00000102 (Notes error 585)"};
  EXPECT_EQ(Told(Verify()), Lines{"contradiction design/00000102.dxl"});
}

TEST_F(NoteFatesTest, AFileOfANoteThatAWorkerDiedAtIsWhole) {
  export_.log = {"#WARNING# - Major: Incomplete run detected for note id 00000102",
                 "#WARNING# - Major: Incomplete run detected for note id 00000902"};
  const Account account = Verify();
  EXPECT_EQ(Told(account), Lines());
  EXPECT_EQ(
      Warned(account),
      (Lines{"worker-death: a worker died at note 00000102 after its file design/00000102.dxl was "
             "placed",
             "worker-death: a worker died at note 00000902 after its file data/00000902.dxl was "
             "placed"}));
  EXPECT_EQ(account.notes.wholeDespiteDeath, 2u);
  EXPECT_EQ(account.Verdict(), ExitCode::kWhole);
}

TEST_F(NoteFatesTest, ADeathAtADesignNoteMayHaveCostItsRawCopy) {
  export_.log = {"#WARNING# - Major: Incomplete run detected for note id 00000106"};
  const Account account = Verify();
  EXPECT_EQ(Told(account),
            Lines{"lost raw copy 00000106 crash a worker died at it: its raw copy may be missing, "
                  "if it was to have one"});
  EXPECT_EQ(account.notes.wholeDespiteDeath, 1u);
  EXPECT_EQ(account.Verdict(), ExitCode::kLosses);
}

TEST_F(NoteFatesTest, PicturesThatTheLogNamesAreLost) {
  export_.log = {"#WARNING# - Minor: Detected corrupt document 00000902, exported without images"};
  EXPECT_EQ(Told(Verify()),
            Lines{"lost pictures 00000902 pictures damaged; exported without its pictures"});
}

TEST_F(NoteFatesTest, PicturesThatTheFileLacksAreLostWithoutALine) {
  export_.Note(0x902).text = "<run>&lt;Picture removed by Brevink Export&gt;</run>";
  const Account account = Verify();
  EXPECT_EQ(Told(account), Lines{"lost pictures 00000902 pictures its pictures were left out; "
                                 "log.txt has no line of it"});
  EXPECT_EQ(account.notes.exportedWithLoss, 1u);
}

TEST_F(NoteFatesTest, PicturesThatLineAndFileTellOfAreOneLoss) {
  export_.Note(0x902).text = "&lt;Picture removed by Brevink Export&gt;";
  export_.log = {"#WARNING# - Minor: Detected corrupt document 00000902, exported without images"};
  EXPECT_EQ(Told(Verify()),
            Lines{"lost pictures 00000902 pictures damaged; exported without its pictures"});
}

TEST_F(NoteFatesTest, AMinorLineDoesNotAccountForAMissingFile) {
  Lose(0x902, "#WARNING# - Minor: Detected corrupt document 00000902, exported without images");
  EXPECT_EQ(Told(Verify()), Lines{"unaccounted 00000902"});
}

TEST_F(NoteFatesTest, AnIndexLineIsMissingOfANoteThatWasOpened) {
  for (const std::uint32_t id : {0x102, 0x902, 0x906, 0x90A, 0x90E})
    export_.Note(id).isIndexed = false;
  Lose(0x906, "#WARNING# - Major: Error opening note 00000906 (a)");
  Lose(0x90A, "#WARNING# - Major: Error decrypting note 0000090A (b)");
  Lose(0x90E, "#WARNING# - Major: Error exporting note 0000090E (c)");
  const std::string missing = " index unidindex.txt has no line for it";
  EXPECT_EQ(Told(Verify()),
            (Lines{"lost index line 00000102" + missing, "lost index line 00000902" + missing,
                   "lost note 00000906 open a", "lost note 0000090A decrypt b",
                   "lost index line 0000090A" + missing, "lost note 0000090E export c",
                   "lost index line 0000090E" + missing}));
}

TEST_F(NoteFatesTest, TheSameNoteInTwoFoldersIsAFinding) {
  export_.Write();
  export_.WriteFile("profile/00000902.dxl", NoteDxl(0x902));
  EXPECT_EQ(Told(export_.Verify()),
            (Lines{"two-files profile/00000902.dxl", "audit-differs audit.txt",
                   "audit-differs audit.txt", "audit-differs audit.txt"}));
}

TEST_F(NoteFatesTest, ARawCopyWithoutItsDesignFileIsStray) {
  export_.Note(0x102).hasFile = false;
  export_.log = {"#WARNING# - Major: Error exporting note 00000102 (a)"};
  export_.notes.at(2).hasRawCopy = true;
  EXPECT_EQ(Told(Verify()),
            (Lines{"lost note 00000102 export a", "stray-raw-copy design2/00000102.dxl",
                   "stray-raw-copy design2/00000902.dxl"}));
}

class PlainFatesTest : public NoteFatesTest {
 protected:
  PlainFatesTest() { plain_.log = {kMismatch}; }

  static constexpr char kMismatch[] =
      "#WARNING# - Document count mismatch: expected 2 but only found 0";
  HandMadeExport plain_{HandMadeExport::Form::kPlain};
};

TEST_F(PlainFatesTest, AnExportOfDesignAloneIsWhole) {
  plain_.Note(0x102).text = "&lt;Picture removed by Brevink Export&gt;";
  plain_.Write();
  const Account account = plain_.Verify();
  EXPECT_FALSE(account.archive);
  EXPECT_EQ(Told(account), Lines());
  EXPECT_EQ(Warned(account), Lines());
  EXPECT_EQ(account.notes.exported, 2u);
}

TEST_F(PlainFatesTest, AMismatchThatTheFormDoesNotExplainIsAWarning) {
  plain_.log = {"#WARNING# - Document count mismatch: expected 3 but only found 0"};
  plain_.Write();
  EXPECT_EQ(Warned(plain_.Verify()),
            Lines{"log: Document count mismatch: expected 3 but only found 0"});
}

TEST_F(PlainFatesTest, ALineOverAFileIsAContradiction) {
  plain_.log = {"#WARNING# - Major: Error exporting note 00000106 (a)"};
  plain_.Write();
  EXPECT_EQ(Told(plain_.Verify()), Lines{"contradiction 00000106.dxl"});
}

TEST_F(PlainFatesTest, ALateDeathCostsNoRawCopy) {
  plain_.log = {"#WARNING# - Major: Incomplete run detected for note id 00000106"};
  plain_.Write();
  EXPECT_EQ(Told(plain_.Verify()), Lines());
}

TEST_F(PlainFatesTest, AMissingNoteIsUnaccounted) {
  plain_.Write();
  plain_.Remove("00000106.dxl");
  EXPECT_EQ(Told(plain_.Verify()), Lines{"unaccounted 00000106"});
}

}  // namespace
}  // namespace larkspan::console
