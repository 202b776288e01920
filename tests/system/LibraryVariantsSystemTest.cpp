// Libraries that lack something or refuse it, and exactly what the program asks of them.
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class LibraryVariantsSystemTest : public SystemTest {
 protected:
  void ExportBesideLibrary(const std::wstring& flavour) {
    run_.UseProgramCopy(run_.folder() + L"\\program", ProgramFolder() + flavour);
    EXPECT_EQ(run_.Export(L"sample.nsf", {L"-archive"}).exitCode, 0u);
  }

  void ExportWithFault(const std::string& fault, const std::wstring& mode = L"-archive") {
    run_.SetFaults("[" + fault + "]");
    run_.AddDatabase(L"x.nsf", DocumentsJson(1));
    EXPECT_EQ(run_.Export(L"x.nsf", {mode}).exitCode, 0u);
  }

  // What was asked of the entry point, as the ledger has it.
  nlohmann::json Asked(const std::string& entry) const {
    return Ledger(0).at("arguments").at(entry);
  }
};

TEST_F(LibraryVariantsSystemTest, ALibraryWithoutTheSearchEndsTheRun) {
  ExportBesideLibrary(L"\\bare");
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to locate NSFSearchExtended3"});
  EXPECT_EQ(Calls(0, "DXLCreateExporter"), 0);
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(LibraryVariantsSystemTest, ALibraryWithoutThePurgeEndsTheRun) {
  ExportBesideLibrary(L"\\nopurge");
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Unable to load NIFPurgeCollection"});
  EXPECT_EQ(Calls(0, "DXLCreateExporter"), 0);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(LibraryVariantsSystemTest, ASearchThatFailsEndsTheRun) {
  ExportWithFault(R"({"entry": "NSFSearchExtended3", "status": 553})");
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error retrieving notes (Notes error 553)"});
  EXPECT_FALSE(run_.HasOutputFile(L"idtable.txt"));
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_FALSE(Contains(AuditLines(), "Database size after archive : 65536"));
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(LibraryVariantsSystemTest, ATableThatCannotBeMadeEndsTheRun) {
  ExportWithFault(R"({"entry": "IDCreateTable", "status": 273})");
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error retrieving notes (Insufficient memory)"});
  EXPECT_EQ(Calls(0, "NSFSearchExtended3"), 0);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(LibraryVariantsSystemTest, AQuotaThatFailsOnlyAfterwardsIsUnavailableOnlyThere) {
  ExportWithFault(R"({"entry": "NSFDbQuotaGet", "call": 2, "status": 553})");
  EXPECT_TRUE(Contains(AuditLines(), "Database size before archive: 65536"));
  EXPECT_TRUE(Contains(AuditLines(), "Database size after archive : unavailable"));
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Unable to read database quota (Notes error 553)"});
}

TEST_F(LibraryVariantsSystemTest, AnAccessControlListThatFailsCostsOnlyItself) {
  ExportWithFault(R"({"entry": "DXLExportACL", "chunks": 1, "status": 585})");
  EXPECT_EQ(LogLines(), Lines{"#WARNING# - Error exporting ACL (Notes error 585)"});
  EXPECT_FALSE(run_.HasOutputFile(L"acl.dxl"));
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
  EXPECT_EQ(FilesIn("data"), Lines{"data/00000902.dxl"});
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(LibraryVariantsSystemTest, TheSearchOfAnArchiveAsksForEverything) {
  run_.Export(L"empty.nsf", {L"-archive"});
  EXPECT_EQ(Asked("NSFSearchExtended3"),
            nlohmann::json({true, 0, 0, 0, false, 0x10, 0x80000002, 0, 0, 0, 0x7FFF,
                            "19000101T000000,00+00", true, true, false, 0}));
}

TEST_F(LibraryVariantsSystemTest, TheSearchOfAPlainExportLeavesOutDataDocuments) {
  run_.Export(L"empty.nsf", {});
  EXPECT_EQ(Asked("NSFSearchExtended3"),
            nlohmann::json({true, 0, 0, 0, false, 0x10, 0, 0, 0, 0, 0x7FFE, "19000101T000000,00+00",
                            true, true, false, 0}));
}

TEST_F(LibraryVariantsSystemTest, TheSinceTimeIsTheBeginningOf1900WithEveryOtherFieldZero) {
  run_.Export(L"empty.nsf", {});
  EXPECT_EQ(Asked("TimeLocalToGM"), nlohmann::json({1900, 1, 1, 0, 0, 0, 0, 0, 0, 0}));
}

constexpr char kPictureText[] =
    "<run><font size='9pt' color='#CCCCCC' />&lt;Picture removed by Brevink Export&gt;</run>";

void AddSettings(int exporter, int outsideArchives, bool removePictures, int convert,
                 nlohmann::json& settings) {
  settings.push_back({exporter, 3, 0});
  for (const int property : {38, 37, 36}) settings.push_back({exporter, property, outsideArchives});
  settings.push_back({exporter, 39, removePictures ? 1 : 0});
  if (removePictures) settings.push_back({exporter, 14, kPictureText});
  settings.push_back({exporter, 35, convert});
}

void AddRawSettings(nlohmann::json& settings) {
  settings.push_back({5, 30, 1});
  settings.push_back({5, 6, 1});
}

TEST_F(LibraryVariantsSystemTest, TheExportersOfAnArchiveAreSetByTheTableInItsOrder) {
  run_.Export(L"empty.nsf", {L"-archive"});
  nlohmann::json settings = nlohmann::json::array();
  AddSettings(1, 0, false, 1, settings);
  AddSettings(2, 0, false, 0, settings);
  AddSettings(3, 0, true, 1, settings);
  AddSettings(4, 0, true, 0, settings);
  AddRawSettings(settings);
  EXPECT_EQ(Asked("DXLSetExporterProperty"), settings);
}

TEST_F(LibraryVariantsSystemTest, TheExportersOfAPlainExportAreSetByTheTableInItsOrder) {
  run_.Export(L"empty.nsf", {});
  nlohmann::json settings = nlohmann::json::array();
  AddSettings(1, 1, true, 0, settings);
  AddSettings(2, 1, true, 0, settings);
  AddSettings(3, 1, true, 1, settings);
  AddSettings(4, 1, true, 0, settings);
  AddRawSettings(settings);
  EXPECT_EQ(Asked("DXLSetExporterProperty"), settings);
}

class ExporterCreationSystemTest : public LibraryVariantsSystemTest,
                                   public ::testing::WithParamInterface<int> {};

TEST_P(ExporterCreationSystemTest, ThatFailsEndsTheRunAndDeletesTheEarlierOnes) {
  const char* const kinds[] = {"", "(no convert) ", "(no images) ", "(no images, no convert) ",
                               "(raw) "};
  const int number = GetParam();
  ExportWithFault(R"({"entry": "DXLCreateExporter", "status": 1181, "exporter": )" +
                  std::to_string(number) + "}");
  EXPECT_EQ(LogLines(), Lines{"#ERROR# - Error creating DXL Exporter " +
                              std::string(kinds[number - 1]) + "(Notes error 1181)"});
  EXPECT_EQ(Calls(0, "DXLDeleteExporter"), number - 1);
  EXPECT_EQ(Calls(0, "NSFDbOpen"), 0);
  EXPECT_EQ(run_.LedgerFault(1), "");
}

INSTANTIATE_TEST_SUITE_P(EachOfTheFive, ExporterCreationSystemTest, ::testing::Range(1, 6));

}  // namespace
}  // namespace larkspan::testing
