// Databases whose notes do everything that a damaged note can do: what is lost has its line, the
// rest comes out.
#include "tests/system/SystemTest.h"

namespace larkspan::testing {
namespace {

class DamagedExportSystemTest : public SystemTest {};

const Lines kEveryLoss = {
    "#WARNING# - Major: Error exporting note 00000206 (Form holds a field that cannot be exported)",
    "#WARNING# - Major: Error exporting note 0000020E (Notes error 585)",
    "#WARNING# - Major: Error opening note 00001206 (Note does not exist in the database)",
    "#WARNING# - Minor: Detected corrupt document 0000120A, exported without images",
    "#WARNING# - Major: Error exporting note 00001212 (Rich text is damaged)",
    "#WARNING# - Minor: Detected corrupt document 00001216, exported without images",
    "#WARNING# - Major: Error exporting note 0000121E (Notes error 13856)",
    "#WARNING# - Major: Error exporting note 00001222 (Notes error 13823)",
    "#WARNING# - Major: Error exporting note 00001226 (Note does not exist in the database)",
    "#WARNING# - Minor: Detected corrupt document 0000122E, exported without images",
    "#WARNING# - Major: Error exporting note 00001232 (Notes error 585)",
    "#WARNING# - Major: Incomplete run detected for note id 00001236",
    "#WARNING# - Major: Error exporting note 0000123A (Notes error 585)"};

TEST_F(DamagedExportSystemTest, EveryLossHasItsLineInOrder) {
  EXPECT_EQ(run_.Export(L"damaged.nsf", {L"-archive"}).exitCode, 0u);
  // The raw copy's failure counts the note as failed although its design file was written.
  EXPECT_EQ(
      LogLines(),
      Join({kEveryLoss, {"#WARNING# - Document count mismatch: expected 21 but only found 22"}}));
}

TEST_F(DamagedExportSystemTest, EveryFileIsPresentOrAbsentAsItsNoteEnded) {
  run_.Export(L"damaged.nsf", {L"-archive"});
  EXPECT_EQ(FilesIn("design"), (Lines{"design/00000202.dxl", "design/0000020A.dxl",
                                      "design/0000020E.dxl", "design/00000212.dxl"}));
  EXPECT_EQ(FilesIn("design2"), Lines{"design2/00000212.dxl"});
  EXPECT_EQ(FilesIn("data"), (Lines{"data/00001202.dxl", "data/0000120A.dxl", "data/0000120E.dxl",
                                    "data/00001216.dxl", "data/0000121A.dxl", "data/0000122A.dxl",
                                    "data/0000122E.dxl", "data/0000123E.dxl"}));
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
}

TEST_F(DamagedExportSystemTest, AnArchiveIsByteForByteAsExpected) {
  run_.Export(L"damaged.nsf", {L"-archive"});
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "damaged-archive"), "");
}

TEST_F(DamagedExportSystemTest, APlainExportIsByteForByteAsExpected) {
  run_.Export(L"damaged.nsf", {});
  EXPECT_EQ(CompareWithExpected(run_.Tree(), "damaged-plain"), "");
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_F(DamagedExportSystemTest, TheWorkerAfterTheCrashGivesEverythingBack) {
  run_.Export(L"damaged.nsf", {L"-archive"});
  ASSERT_EQ(run_.LedgerLines().size(), 2u);
  EXPECT_EQ(run_.LeftOpen(1), Lines());
}

TEST_F(DamagedExportSystemTest, AFormLosesOnlyTheListedFieldItemsThatAreNoTextAndNoFormula) {
  run_.Export(L"damaged.nsf", {L"-archive"});
  const std::string form = run_.OutputFile(L"design\\00000202.dxl");
  EXPECT_EQ(form.find("name='$$A'"), std::string::npos);
  EXPECT_EQ(form.find("name='$$B'"), std::string::npos);
  EXPECT_NE(form.find("name='$$C'"), std::string::npos);
  EXPECT_NE(form.find("name='$$D'"), std::string::npos);
}

struct DesignFailure {
  const wchar_t* database;
  const char* line;
};

class DesignFailureSystemTest : public SystemTest,
                                public ::testing::WithParamInterface<DesignFailure> {};

TEST_P(DesignFailureSystemTest, StopsTheRunAtOnce) {
  const ProgramResult result = run_.Export(GetParam().database, {L"-archive"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(
      LogLines(),
      (Lines{GetParam().line, "#WARNING# - Document count mismatch: expected 4 but only found 1"}));
  EXPECT_EQ(FilesIn("design"), Lines{"design/00000202.dxl"});
  EXPECT_EQ(FilesIn("data"), Lines());
  EXPECT_EQ(run_.LedgerFault(1), "");
}

TEST_P(DesignFailureSystemTest, LeavesNoMarkerAndNoTemporaryFile) {
  run_.Export(GetParam().database, {L"-archive", L"-l", L"0"});
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
  EXPECT_FALSE(run_.HasOutputFile(L"temp.tmp"));
}

TEST_P(DesignFailureSystemTest, ClosesTheAuditReportWithoutASizeAfterTheArchive) {
  run_.Export(GetParam().database, {L"-archive"});
  const Lines audit = AuditLines();
  EXPECT_TRUE(audit.at(5).starts_with("Database size before archive: "));
  EXPECT_EQ(Tail(audit, audit.size() - 6), ClosingLines({.listed = 4, .design = 1}));
}

INSTANTIATE_TEST_SUITE_P(
    BothStatuses, DesignFailureSystemTest,
    ::testing::Values(DesignFailure{L"designfail-6967.nsf",
                                    "#ERROR# - Unable to export design: Design of the database "
                                    "cannot be exported"},
                      DesignFailure{
                          L"designfail-6968.nsf",
                          "#ERROR# - Unable to export design: Design of the database is hidden"}),
    [](const auto& test) { return test.index == 0 ? "Status6967" : "Status6968"; });

TEST_F(DamagedExportSystemTest, ADesignFailureOfTheRawCopyStopsTheRunToo) {
  run_.AddDatabase(L"raw.nsf", R"({"sizeKilobytes": 64,
      "faults": [{"entry": "DXLExportNote", "exporter": 5, "status": 6968}],
      "notes": [{"id": "00000106", "class": "form",
                 "items": [{"name": "$Body", "richText": ["body"]}]},
                {"id": "00000902", "items": [{"name": "Form", "text": "Note"}]}]})");
  run_.Export(L"raw.nsf", {L"-archive"});
  EXPECT_TRUE(LogLines().front().starts_with("#ERROR# - Unable to export design: "));
  EXPECT_TRUE(run_.HasOutputFile(L"design\\00000106.dxl"));
  EXPECT_EQ(FilesIn("data"), Lines{});
  EXPECT_FALSE(run_.HasOutputFile(L"marker.txt"));
}

}  // namespace
}  // namespace larkspan::testing
