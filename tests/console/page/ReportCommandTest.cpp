// report on what the real program exported.
#include <gtest/gtest.h>

#include "base/Utf8.h"
#include "console/CommandLine.h"
#include "tests/console/page/PageTestContent.h"
#include "tests/support/ExportRun.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

class ReportCommandTest : public ::testing::Test {
 protected:
  ExitCode Report(const std::wstring& file) {
    return RunCommandLine(
        {"report", WideToUtf8(run_.output()), "--html", WideToUtf8(file), "--quiet"});
  }

  larkspan::testing::ExportRun run_;
  TempFolder folder_;
  const std::wstring file_ = folder_ / L"\\Bericht \u30C4.html";
};

TEST_F(ReportCommandTest, AWholeExportGivesItsPageAndCode) {
  run_.Export(L"sample.nsf", {L"-archive"});
  EXPECT_EQ(Report(file_), ExitCode::kWhole);
  const std::string page = ReadBytes(file_);
  EXPECT_NE(page.find("<h1 dir=\"auto\">Pflanzenregister / Plant Register</h1>"), page.npos);
  EXPECT_NE(page.find("<strong>Whole</strong>"), page.npos);
  EXPECT_EQ(TimesIn(page, "<details>"), 12u);
  EXPECT_NE(page.find("22 documents \xC2\xB7 28 categories \xC2\xB7 8 totals"), page.npos);
  EXPECT_NE(page.find("\xE3\x83\x84\xE3\x83\x90\xE3\x82\xAD (Tsubaki)"), page.npos);
}

TEST_F(ReportCommandTest, LossesGiveTheirCodeAndRows) {
  run_.Export(L"damaged.nsf", {L"-archive"});
  EXPECT_EQ(Report(file_), ExitCode::kLosses);
  const std::string page = ReadBytes(file_);
  EXPECT_EQ(TimesIn(page, "<td class=\"kind loss\">Note lost</td>"), 9u);
  EXPECT_EQ(TimesIn(page, "<td class=\"kind loss\">Pictures missing</td>"), 5u);
  EXPECT_EQ(TimesIn(page, "<td class=\"kind loss\">Raw copy missing</td>"), 1u);
}

TEST_F(ReportCommandTest, AFolderThatIsNotAccountedForGivesItsCode) {
  run_.Export(L"sample.nsf", {L"-archive"});
  WriteBytes(run_.output() + L"\\data\\stranger.dxl", "");
  EXPECT_EQ(Report(file_), ExitCode::kIncomplete);
}

TEST_F(ReportCommandTest, APlainExportHasAPageToo) {
  run_.Export(L"sample.nsf", {});
  EXPECT_EQ(Report(file_), ExitCode::kWhole);
}

TEST_F(ReportCommandTest, WithoutAnExportThereIsNoPage) {
  EXPECT_EQ(Report(file_), ExitCode::kCouldNotRun);
  EXPECT_FALSE(Exists(file_));
}

TEST_F(ReportCommandTest, APageThatCannotBeWrittenIsNoSuccess) {
  run_.Export(L"sample.nsf", {L"-archive"});
  EXPECT_EQ(Report(folder_ / L"\\missing\\page.html"), ExitCode::kCouldNotRun);
}

TEST_F(ReportCommandTest, AFileOfTheExportIsNeverReplaced) {
  run_.Export(L"sample.nsf", {L"-archive"});
  const std::string audit = run_.OutputFile(L"audit.txt");
  EXPECT_EQ(Report(run_.output() + L"\\audit.txt"), ExitCode::kCouldNotRun);
  EXPECT_EQ(run_.OutputFile(L"audit.txt"), audit);
}

TEST_F(ReportCommandTest, APageWithinTheExportIsAFindingOfTheNextReport) {
  run_.Export(L"sample.nsf", {L"-archive"});
  EXPECT_EQ(Report(run_.output() + L"\\page.html"), ExitCode::kWhole);
  EXPECT_EQ(Report(run_.output() + L"\\page.html"), ExitCode::kIncomplete);
}

TEST_F(ReportCommandTest, ANameIsNeededForThePage) {
  EXPECT_EQ(RunCommandLine({"report", "somewhere"}), ExitCode::kUsage);
  EXPECT_EQ(RunCommandLine({"report", "somewhere", "--html", "=page"}), ExitCode::kUsage);
}

}  // namespace
}  // namespace larkspan::console
