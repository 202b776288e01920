#include "console/batch/Summary.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "console/text/Csv.h"
#include "tests/support/FileBytes.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

BatchEntry Entry(const std::string& server, const std::string& path) {
  BatchEntry entry;
  entry.database = {server, path, "", false};
  entry.folder = L"D:\\export\\Mill\\a.nsf";
  return entry;
}

BatchEntry WithLosses() {
  BatchEntry entry = Entry("Mill/Example", "a.nsf");
  entry.database.title = "Orders, \"old\"";
  entry.state = BatchState::kDone;
  entry.code = ExitCode::kLosses;
  entry.reason = "2 losses, each of which is listed";
  entry.out = entry.folder;
  entry.started = "2026-11-21T17:00:00Z";
  entry.since = "2026-11-22T07:00:00Z";
  entry.ended = "2026-11-22T07:01:30Z";
  entry.counts = NoteCounts{1'234, 1'232, 0, 0, 2, 0, 0, 0};
  entry.losses = 2;
  entry.warnings = 1;
  return entry;
}

SummaryContent Content(std::vector<BatchEntry> entries) {
  return {"D:\\export", "list.csv", "1.2.3", "2026-11-22T08:00:00Z", false, std::move(entries)};
}

bool Has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

TEST(SummaryTest, TheTableHasARowForEachDatabase) {
  const std::string table = SummaryTable({WithLosses(), Entry("", "b.nsf")});
  ASSERT_TRUE(table.starts_with("\xEF\xBB\xBF"));
  const auto rows = ParseCsv(std::string_view(table).substr(3));
  ASSERT_TRUE(rows);
  ASSERT_EQ(rows->size(), 3u);
  EXPECT_EQ(rows->at(0), (CsvRow{"server", "path", "title", "state", "exit_code", "reason",
                                 "listed", "exported", "lost", "losses", "findings", "warnings",
                                 "started", "ended", "seconds", "folder", "lies_in"}));
  EXPECT_EQ(rows->at(1), (CsvRow{"Mill/Example", "a.nsf", "Orders, \"old\"", "losses", "3",
                                 "2 losses, each of which is listed", "1234", "1232", "2", "2", "0",
                                 "1", "2026-11-21T17:00:00Z", "2026-11-22T07:01:30Z", "90",
                                 "D:\\export\\Mill\\a.nsf", "D:\\export\\Mill\\a.nsf"}));
  EXPECT_EQ(rows->at(2), (CsvRow{"", "b.nsf", "", "waiting", "", "", "", "", "", "", "", "", "", "",
                                 "", "D:\\export\\Mill\\a.nsf", ""}));
}

TEST(SummaryTest, ThePageShowsEachDatabaseWithALinkToItsFolder) {
  BatchEntry entry = WithLosses();
  entry.out = L"D:\\export\\Mill Example\\\u7A2E#.nsf";
  const std::string page = SummaryPage(Content({entry}), "abc");
  EXPECT_TRUE(Has(page,
                  "<a href=\"Mill%20Example/%E7%A8%AE%23.nsf/\">"
                  "<bdi>Mill/Example!!a.nsf</bdi></a>"))
      << page;
  EXPECT_TRUE(Has(page, "Orders, &quot;old&quot;"));
  EXPECT_TRUE(Has(page, "1,232 of 1,234"));
  EXPECT_TRUE(Has(page, "2 losses, each of which is listed"));
  EXPECT_TRUE(Has(page, "1 of 1 database done: 1 with losses."));
  EXPECT_TRUE(Has(page, "exit code 3"));
  EXPECT_TRUE(Has(page, "<option value=\"losses\">losses (1)</option>"));
}

TEST(SummaryTest, NamesCannotBecomePartsOfThePage) {
  BatchEntry entry = WithLosses();
  entry.database = {"<b>", "\"><script>", "</title>", false};
  entry.reason = "<i>";
  const std::string page = SummaryPage(Content({entry}), "abc");
  EXPECT_FALSE(Has(page, "<b>"));
  EXPECT_FALSE(Has(page, "\"><script>"));
  EXPECT_FALSE(Has(page, "</title>\xEF"));
  EXPECT_FALSE(Has(page, "<i>"));
}

TEST(SummaryTest, ABatchAtWorkAndOneThatIsNotAllBegunSaySo) {
  SummaryContent content = Content({WithLosses(), Entry("", "b.nsf")});
  EXPECT_TRUE(Has(SummaryPage(content, "abc"), "<strong>Not all is begun</strong>"));
  content.isRunning = true;
  EXPECT_TRUE(Has(SummaryPage(content, "abc"), "<strong>At work</strong>"));
}

TEST(SummaryTest, BothFilesAreWrittenOverEarlierOnes) {
  const TempFolder folder;
  const SummaryContent content = Content({WithLosses()});
  ASSERT_TRUE(WriteSummary(folder.path(), Content({})));
  ASSERT_TRUE(WriteSummary(folder.path(), content));
  EXPECT_EQ(ReadBytes(folder.path() + kSummaryTable), SummaryTable(content.entries));
  EXPECT_TRUE(ReadBytes(folder.path() + kSummaryPage).ends_with("</html>\n"));
}

TEST(SummaryTest, ASummaryThatCannotBeWrittenIsSaid) {
  const TempFolder folder;
  std::filesystem::create_directory(folder.path() + kSummaryPage);
  EXPECT_FALSE(WriteSummary(folder.path(), Content({})));
}

}  // namespace
}  // namespace larkspan::console
