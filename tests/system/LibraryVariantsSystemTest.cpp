// Libraries that lack something, and set-up steps that fail: each ends the run, or goes on, with
// its own line, and gives back what was opened.
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

constexpr char kPictureText[] =
    "<run><font size='9pt' color='#CCCCCC' />&lt;Picture removed by Brevink Export&gt;</run>";

class LibraryVariantsSystemTest : public SystemTest {
 protected:
  // Exports an archive while an entry point fails in the given way.
  Lines LogOfArchiveWithFault(const std::string& fault) {
    run_.AddDatabase(L"two.nsf", DocumentsJson(2, FaultsMember(fault)));
    EXPECT_EQ(run_.Export(L"two.nsf", {L"-archive"}).exitCode, 0u);
    return LogLines();
  }

  nlohmann::json PropertiesOf(const std::vector<std::wstring>& arguments) {
    run_.AddDatabase(L"two.nsf", DocumentsJson(2));
    run_.Export(L"two.nsf", arguments);
    return Ledger(0).at("arguments").at("DXLSetExporterProperty");
  }
};

TEST_F(LibraryVariantsSystemTest, ALibraryWithoutTheSearchEndsTheRun) {
  run_.UseProgramCopy(run_.folder() + L"\\program", ProgramFolder() + L"\\bare");
  EXPECT_EQ(run_.Export(L"sample.nsf", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to locate NSFSearchExtended3"});
  EXPECT_EQ(Calls(0, "DXLCreateExporter"), 0);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(LibraryVariantsSystemTest, ALibraryWithoutThePurgeEndsTheRun) {
  run_.UseProgramCopy(run_.folder() + L"\\program", ProgramFolder() + L"\\nopurge");
  EXPECT_EQ(run_.Export(L"sample.nsf", {L"-archive"}).exitCode, 0u);
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to load NIFPurgeCollection"});
  EXPECT_EQ(run_.LedgerFault(1), "");
}

struct ExporterCase {
  int call;
  const char* message;
};

class ExporterCreationSystemTest : public LibraryVariantsSystemTest,
                                   public ::testing::WithParamInterface<ExporterCase> {};

TEST_P(ExporterCreationSystemTest, AnExporterThatCannotBeMadeEndsTheRunAndTheOthersAreDeleted) {
  run_.SetFaults(R"([{"entry": "DXLCreateExporter", "call": )" + std::to_string(GetParam().call) +
                 R"(, "status": 585}])");
  run_.Export(L"sample.nsf", {L"-archive"});
  EXPECT_EQ(LogLines(),
            Lines{"#ERROR# - " + std::string(GetParam().message) + " (Notes error 585)"});
  EXPECT_EQ(Calls(0, "DXLDeleteExporter"), GetParam().call - 1);
  EXPECT_EQ(Calls(0, "NSFDbOpen"), 0);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

INSTANTIATE_TEST_SUITE_P(
    InTurn, ExporterCreationSystemTest,
    ::testing::Values(ExporterCase{1, "Error creating DXL Exporter"},
                      ExporterCase{2, "Error creating DXL Exporter (no convert)"},
                      ExporterCase{3, "Error creating DXL Exporter (no images)"},
                      ExporterCase{4, "Error creating DXL Exporter (no images, no convert)"},
                      ExporterCase{5, "Error creating DXL Exporter (raw)"}),
    [](const auto& test) { return "Exporter" + std::to_string(test.param.call); });

TEST_F(LibraryVariantsSystemTest, AnArchiveSetsTheExportersPropertiesInOrder) {
  const auto expected = nlohmann::json::array({{1, 3, 0},
                                               {1, 38, 0},
                                               {1, 37, 0},
                                               {1, 36, 0},
                                               {1, 39, 0},
                                               {1, 35, 1},
                                               {2, 3, 0},
                                               {2, 38, 0},
                                               {2, 37, 0},
                                               {2, 36, 0},
                                               {2, 39, 0},
                                               {2, 35, 0},
                                               {3, 3, 0},
                                               {3, 38, 0},
                                               {3, 37, 0},
                                               {3, 36, 0},
                                               {3, 39, 1},
                                               {3, 14, kPictureText},
                                               {3, 35, 1},
                                               {4, 3, 0},
                                               {4, 38, 0},
                                               {4, 37, 0},
                                               {4, 36, 0},
                                               {4, 39, 1},
                                               {4, 14, kPictureText},
                                               {4, 35, 0},
                                               {5, 30, 1},
                                               {5, 6, 1}});
  EXPECT_EQ(PropertiesOf({L"-archive"}), expected);
}

TEST_F(LibraryVariantsSystemTest, APlainExportSetsTheExportersPropertiesInOrder) {
  const auto expected = nlohmann::json::array({{1, 3, 0},
                                               {1, 38, 1},
                                               {1, 37, 1},
                                               {1, 36, 1},
                                               {1, 39, 1},
                                               {1, 14, kPictureText},
                                               {1, 35, 0},
                                               {2, 3, 0},
                                               {2, 38, 1},
                                               {2, 37, 1},
                                               {2, 36, 1},
                                               {2, 39, 1},
                                               {2, 14, kPictureText},
                                               {2, 35, 0},
                                               {3, 3, 0},
                                               {3, 38, 1},
                                               {3, 37, 1},
                                               {3, 36, 1},
                                               {3, 39, 1},
                                               {3, 14, kPictureText},
                                               {3, 35, 1},
                                               {4, 3, 0},
                                               {4, 38, 1},
                                               {4, 37, 1},
                                               {4, 36, 1},
                                               {4, 39, 1},
                                               {4, 14, kPictureText},
                                               {4, 35, 0},
                                               {5, 30, 1},
                                               {5, 6, 1}});
  EXPECT_EQ(PropertiesOf({}), expected);
}

TEST_F(LibraryVariantsSystemTest, APropertyThatIsRefusedIsNamedAndTheExportGoesOn) {
  run_.SetFaults(R"([{"entry": "DXLSetExporterProperty", "call": 17, "status": 585}])");
  run_.AddDatabase(L"two.nsf", DocumentsJson(2));
  run_.Export(L"two.nsf", {L"-archive"});
  EXPECT_EQ(LogLines(),
            Lines{"#WARNING# - Error setting DXL exporter property 39 (Notes error 585)"});
  EXPECT_EQ(FilesIn("data").size(), 2u);
}

TEST_F(LibraryVariantsSystemTest, ADatabaseThatCannotBeOpenedEndsTheRun) {
  EXPECT_EQ(LogOfArchiveWithFault(R"({"entry": "NSFDbOpen", "status": 585})"),
            Lines{"#ERROR# - Error opening database (Notes error 585)"});
  EXPECT_FALSE(run_.HasOutputFile(L"acl.dxl"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(LibraryVariantsSystemTest, AFailingSearchEndsTheRun) {
  EXPECT_EQ(LogOfArchiveWithFault(R"({"entry": "NSFSearchExtended3", "status": 585})"),
            Lines{"#ERROR# - Error retrieving notes (Notes error 585)"});
  EXPECT_FALSE(run_.HasOutputFile(L"idtable.txt"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(LibraryVariantsSystemTest, ATableThatCannotBeMadeEndsTheRun) {
  EXPECT_EQ(LogOfArchiveWithFault(R"({"entry": "IDCreateTable", "status": 585})"),
            Lines{"#ERROR# - Error retrieving notes (Notes error 585)"});
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(LibraryVariantsSystemTest, ANoteThatCannotBeListedEndsTheRunInsteadOfBeingLost) {
  EXPECT_EQ(LogOfArchiveWithFault(R"({"entry": "IDInsert", "call": 2, "status": 585})"),
            Lines{"#ERROR# - Error retrieving notes (Notes error 585)"});
  EXPECT_FALSE(run_.HasOutputFile(L"idtable.txt"));
}

TEST_F(LibraryVariantsSystemTest, AFailingAclIsAWarningAndTheExportGoesOn) {
  EXPECT_EQ(LogOfArchiveWithFault(R"({"entry": "DXLExportACL", "status": 585})"),
            Lines{"#WARNING# - Error exporting ACL (Notes error 585)"});
  EXPECT_FALSE(run_.HasOutputFile(L"acl.dxl"));
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
  EXPECT_EQ(FilesIn("data").size(), 2u);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(LibraryVariantsSystemTest, ASizeThatIsNotToldIsUnavailableInTheReport) {
  const std::string warning = "#WARNING# - Unable to read database quota (Notes error 585)";
  EXPECT_EQ(LogOfArchiveWithFault(R"({"entry": "NSFDbQuotaGet", "status": 585})"),
            (Lines{warning, warning}));
  const Lines audit = AuditLines();
  EXPECT_TRUE(Contains(audit, "Database size before archive: unavailable"));
  EXPECT_TRUE(Contains(audit, "Database size after archive : unavailable"));
}

TEST_F(LibraryVariantsSystemTest, TheSizeAfterIsReportedOnlyByAWorkerThatReachesTheEnd) {
  LogOfArchiveWithFault(R"({"entry": "DXLExportNote", "call": 2, "status": 6967})");
  const Lines audit = AuditLines();
  EXPECT_TRUE(Contains(audit, "Database size before archive: 65536"));
  EXPECT_FALSE(Contains(audit, "Database size after archive : 65536"));
}

}  // namespace
}  // namespace larkspan::testing
