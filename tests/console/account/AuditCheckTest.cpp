// The audit report's last block, counted again.
#include <gtest/gtest.h>

#include "tests/console/account/HandMadeExport.h"

namespace larkspan::console {
namespace {

class AuditCheckTest : public ::testing::Test {
 protected:
  Lines Texts() {
    Lines texts;
    for (const Finding& finding : export_.Verify().findings)
      texts.push_back(finding.kind + ": " + finding.text);
    return texts;
  }

  HandMadeExport export_;
};

struct AuditChange {
  const char* name;
  const char* from;
  const char* to;
  const char* finding;
};

class AuditChangeTest : public AuditCheckTest, public ::testing::WithParamInterface<AuditChange> {};

TEST_P(AuditChangeTest, IsNoticed) {
  export_.log = {"#WARNING# - Major: Error opening note 0000090A (a)",
                 "#WARNING# - Minor: Detected corrupt document 00000902, exported without images"};
  export_.Note(0x90A).hasFile = false;
  export_.Write();
  ASSERT_EQ(Texts(), Lines());
  export_.Replace("audit.txt", GetParam().from, GetParam().to);
  EXPECT_EQ(Texts(), Lines{GetParam().finding});
}

INSTANTIATE_TEST_SUITE_P(
    Changes, AuditChangeTest,
    ::testing::Values(
        AuditChange{"Listed", "documents :        6", "documents :        7",
                    "audit-differs: audit.txt says 'Database total documents': 7, but it is 6"},
        AuditChange{"Data", "Data   :        2", "Data   :        3",
                    "audit-differs: audit.txt says 'Data': 3, but it is 2"},
        AuditChange{"Design", "Design :        2", "Design :        1",
                    "audit-differs: audit.txt says 'Design': 1, but it is 2"},
        AuditChange{"Profile", "Profile:        1", "Profile:        0",
                    "audit-differs: audit.txt says 'Profile': 0, but it is 1"},
        AuditChange{"Exported", "Exported total documents :        5",
                    "Exported total documents :        4",
                    "audit-differs: audit.txt says 'Exported total documents': 4, but it is 5"},
        AuditChange{"Failed", "Failed total documents   :        1",
                    "Failed total documents   :        2",
                    "audit-differs: audit.txt says 'Failed total documents': 2, but it is 1"},
        AuditChange{"Processed", "processed:        6", "processed:        5",
                    "audit-differs: audit.txt says 'Total documents processed': 5, but it is 6"},
        AuditChange{"Warned", "warnings :        1", "warnings :        0",
                    "audit-differs: audit.txt says 'Documents exported with warnings': 0, but it "
                    "is 1"},
        AuditChange{"Sentence",
                    "Some documents were not exported successfully. See log.txt for details.\r\n",
                    "",
                    "audit-differs: audit.txt does not end with the sentence that points to "
                    "log.txt"},
        AuditChange{"NoNumber", "Data   :        2", "Data   :        two",
                    "audit: audit.txt has no number behind 'Data'"},
        AuditChange{"NoSize", "after archive : 2097152", "after archive : big",
                    "audit: audit.txt tells a size of the database that is none"},
        AuditChange{"Missing", "Design :        2\r\n", "",
                    "audit: audit.txt lacks the line 'Design : '"},
        AuditChange{"MissingServer", "Archive database server: \r\n", "",
                    "audit: audit.txt lacks the line 'Archive database server: '"},
        AuditChange{"Doubled", "Design :        2\r\n",
                    "Design :        2\r\nDesign :        2\r\n",
                    "audit: line 14 of audit.txt does not belong there"},
        AuditChange{"OutOfOrder", "Exported Document Counts\r\nData   :        2\r\n",
                    "Data   :        2\r\nExported Document Counts\r\n",
                    "audit: line 12 of audit.txt does not belong there"},
        AuditChange{"Unknown", "Profile:", "Something\r\nProfile:",
                    "audit: line 14 of audit.txt is not as the program writes it"},
        AuditChange{"LineFeedAlone", "Data   :        2\r\n", "Data   :        2\n",
                    "audit: line 12 of audit.txt is not as the program writes it"},
        AuditChange{"NoEnd", "Database size after archive : 2097152\r\n", "",
                    "incomplete: the run did not come to its end: audit.txt has no size of the "
                    "database after the archive"},
        AuditChange{"NoBegin", "Archive started at: 11/20/26 19:31:34 UTC\r\n", "",
                    "audit: audit.txt lacks the line with which a run begins"}),
    [](const auto& test) { return test.param.name; });

TEST_F(AuditCheckTest, ASentenceWithoutReasonIsNoticed) {
  export_.Write();
  export_.WriteFile(
      "audit.txt",
      export_.ReadFile("audit.txt") +
          "Some documents were not exported successfully. See log.txt for details.\r\n");
  EXPECT_EQ(Texts(), Lines{"audit-differs: audit.txt points to log.txt, which tells of no note"});
}

TEST_F(AuditCheckTest, ASizeThatTheLibraryDoesNotTellIsNoFinding) {
  export_.Write();
  export_.Replace("audit.txt", "after archive : 2097152", "after archive : unavailable");
  const Account account = export_.Verify();
  EXPECT_EQ(Told(account), Lines());
  EXPECT_TRUE(account.audit.cameToItsEnd);
  EXPECT_FALSE(account.audit.sizeAfter);
  EXPECT_EQ(account.audit.sizeBefore, 2097152u);
}

TEST_F(AuditCheckTest, AReportWithoutItsClosingBlockIsIncomplete) {
  export_.isClosed = false;
  export_.Write();
  EXPECT_EQ(Texts(), Lines{"incomplete: the last run in audit.txt has no closing block"});
}

TEST_F(AuditCheckTest, ARunThatDidNotComeToItsEndBringsTheLastErrorAlong) {
  export_.cameToItsEnd = false;
  export_.log = {"#ERROR# - Maximum retries exceeded"};
  export_.Write();
  EXPECT_EQ(Texts(),
            Lines{"incomplete: the run did not come to its end: audit.txt has no size of the "
                  "database after the archive; the log's last ERROR is: Maximum retries exceeded"});
  EXPECT_EQ(Warned(export_.Verify()), Lines());
}

TEST_F(AuditCheckTest, OnlyTheLastRunIsJudged) {
  export_.Write();
  const std::string last = export_.ReadFile("audit.txt");
  export_.WriteFile("audit.txt", "Archive started at: 11/19/26 10:00:00 UTC\r\ngarbage\r\n" + last);
  EXPECT_EQ(Texts(), Lines());
  export_.WriteFile("audit.txt", last + "Archive started at: 11/21/26 10:00:00 UTC\r\n");
  EXPECT_EQ(Told(export_.Verify()), (Lines{"incomplete audit.txt", "incomplete audit.txt"}));
}

TEST_F(AuditCheckTest, AMissingReportIsAFinding) {
  export_.Write();
  export_.Remove("audit.txt");
  EXPECT_EQ(Texts(),
            Lines{"missing: audit.txt is missing: nothing tells whether the run came to its end"});
}

TEST_F(AuditCheckTest, AnEmptyReportSaysNothing) {
  export_.Write();
  export_.WriteFile("audit.txt", "");
  EXPECT_EQ(Told(export_.Verify()),
            (Lines{"audit audit.txt", "incomplete audit.txt", "incomplete audit.txt"}));
}

TEST_F(AuditCheckTest, WhatTheReportSaysOfTheRunIsTakenOver) {
  export_.Write();
  export_.Replace("audit.txt", "without full access", "with full access");
  const AuditBlock audit = export_.Verify().audit;
  EXPECT_EQ(audit.started, "11/20/26 19:31:34 UTC");
  EXPECT_EQ(audit.ended, "11/20/26 19:31:36 UTC");
  EXPECT_EQ(audit.runtimeSeconds, "2.00");
  EXPECT_EQ(audit.user, "CN=Ada Quill/O=Example");
  EXPECT_EQ(audit.server, "");
  EXPECT_EQ(audit.path, "sample.nsf");
  EXPECT_TRUE(audit.fullAccess);
  EXPECT_EQ(audit.sizeAfter, 2097152u);
}

}  // namespace
}  // namespace larkspan::console
