// Which database is opened, where, and with whose rights.
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class AccessSystemTest : public SystemTest {
 protected:
  nlohmann::json FullAccessOpening() const {
    return Ledger(0).at("arguments").at("NSFDbOpenExtended");
  }

  // The audit report from the database lines on, without the closing block.
  Lines DatabaseAudit() const {
    const Lines all = AuditLines();
    return Lines(all.begin() + 2, all.begin() + 7);
  }
};

// The two lines around a run that opened nothing.
Lines AuditWithoutDatabase() {
  return Join(
      {{"Archive started at: *", "Set user to: CN=Larkspan Tester/O=Example"}, ClosingLines({})});
}

TEST_F(AccessSystemTest, ADatabaseThatDeniesAccessIsNotExported) {
  EXPECT_EQ(run_.Export(L"locked.nsf", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(LogLines(),
            Lines{"#ERROR# - Error opening database (You are not authorized to open the "
                  "database)"});
  EXPECT_EQ(AuditLines(), AuditWithoutDatabase());
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(AccessSystemTest, FullAccessOpensIt) {
  run_.Export(L"locked.nsf", {L"-archive", L"-FullAccess"});
  EXPECT_EQ(LogLines(), Lines());
  EXPECT_EQ(FilesIn("data"), (Lines{"data/00000902.dxl", "data/00000906.dxl"}));
  EXPECT_EQ(AuditLines().at(4), "Archive with full access admin");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(AccessSystemTest, FullAccessNamesTheUserInTheNamesList) {
  run_.Export(L"locked.nsf", {L"-archive", L"-fullaccess"});
  EXPECT_EQ(
      FullAccessOpening(),
      nlohmann::json({{"path", "locked.nsf"},
                      {"options", 0},
                      {"names", {{"authentication", 7}, {"name", "CN=Larkspan Tester/O=Example"}}},
                      {"hasSince", false}}));
  EXPECT_EQ(Calls(0, "NSFDbOpen"), 0);
}

TEST_F(AccessSystemTest, FullAccessNamesASwitchedUserOutsideAscii) {
  run_.Export(L"locked.nsf", {L"-archive", L"-fullaccess", L"-id", L"ids\\no\u00E9.id",
                              L"-password", L"p\u00E2querette"});
  EXPECT_EQ(FullAccessOpening().at("names").at("name"), "CN=No\xC3\xA9 B\xC3\xA9ranger/O=Garten");
  EXPECT_EQ(FilesIn("data").size(), 2u);
}

TEST_F(AccessSystemTest, AMissingDatabaseEndsTheRun) {
  EXPECT_EQ(run_.Export(L"none.nsf", {L"-archive", L"-debug"}).exitCode, 0u);
  EXPECT_TRUE(Contains(LogLines(), "#ERROR# - Error opening database (File does not exist)"));
  EXPECT_TRUE(Contains(LogLines(), "#DEBUG# - CountInputDocuments fopen failed"));
  EXPECT_EQ(CountLines(LogLines(), "#DEBUG# - Invoking child process"), 1);
  EXPECT_EQ(AuditLines(), AuditWithoutDatabase());
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(AccessSystemTest, ADatabaseOnAServerIsAuditedWithItsServerAndPath) {
  run_.Export(L"bulbs.nsf", {L"-s", L"Garden", L"-archive"});
  EXPECT_EQ(DatabaseAudit(),
            (Lines{"Archive database server: Garden", "Archive database path  : bulbs.nsf",
                   "Archive without full access admin", "Database size before archive: unavailable",
                   "Database size after archive : unavailable"}));
  EXPECT_EQ(FilesIn("data").size(), 3u);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(AccessSystemTest, AQuotaThatCannotBeReadIsAWarningBeforeAndAfter) {
  run_.Export(L"bulbs.nsf", {L"-s", L"Garden", L"-archive"});
  const std::string line =
      "#WARNING# - Unable to read database quota (Database has no quota information)";
  EXPECT_EQ(LogLines(), (Lines{line, line}));
}

TEST_F(AccessSystemTest, AServerAndAPathOutsideAsciiAreWholeInAuditAndProgress) {
  const ProgramResult result =
      run_.Export(L"\u00D6sterliche Beete.nsf", {L"-s", L"Glash\u00E4user", L"-archive"});
  EXPECT_EQ(DatabaseAudit().at(0), "Archive database server: Glash\xC3\xA4user");
  EXPECT_EQ(DatabaseAudit().at(1), "Archive database path  : \xC3\x96sterliche Beete.nsf");
  EXPECT_TRUE(
      result.standardOutput.starts_with("PROGRESS: Opening '\xC3\x96sterliche Beete.nsf' "
                                        "on 'Glash\xC3\xA4user'\r\n"))
      << result.standardOutput;
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
}

TEST_F(AccessSystemTest, TheLocalWordOpensTheLocalPath) {
  run_.Export(L"empty.nsf", {L"-s", L"<Local>", L"-archive", L"-fullaccess"});
  EXPECT_EQ(FullAccessOpening().at("path"), "empty.nsf");
  EXPECT_EQ(DatabaseAudit().at(0), "Archive database server: ");
}

TEST_F(AccessSystemTest, AnEmptyServerOpensTheLocalPath) {
  run_.Export(L"empty.nsf", {L"-s", L"", L"-archive", L"-fullaccess"});
  EXPECT_EQ(FullAccessOpening().at("path"), "empty.nsf");
}

TEST_F(AccessSystemTest, TheLocalWordInAnotherLetterCaseIsAServer) {
  const ProgramResult result =
      run_.Export(L"empty.nsf", {L"-s", L"<local>", L"-archive", L"-fullaccess"});
  EXPECT_EQ(FullAccessOpening().at("path"), "<local>!!empty.nsf");
  EXPECT_EQ(result.standardOutput, "PROGRESS: Opening 'empty.nsf' on '<local>'\r\n");
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error opening database (File does not exist)"});
}

}  // namespace
}  // namespace larkspan::testing
