// The text of the page: what stands in it, and that nothing of it comes to life. What a browser
// makes of it is seen by tests/browser.
#include "console/page/Page.h"
#include "console/page/Pieces.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "console/text/Utf.h"
#include "tests/console/page/PageTestContent.h"

namespace larkspan::console {
namespace {

constexpr char kNonce[] = "0123456789abcdef";
constexpr char kHostile[] = "</script><script>alert('\"&')</script><img src=x onerror=y>";

std::string RenderedPage(const PageContent& content) { return RenderPage(content, kNonce); }

bool PageHas(const std::string& page, const std::string& part) {
  return page.find(part) != page.npos;
}

// The rows that the page hands to its script.
nlohmann::json NoticesData(const std::string& page) {
  const std::string begin = "id=\"notices-data\">";
  const std::size_t from = page.find(begin) + begin.size();
  return nlohmann::json::parse(page.substr(from, page.find("</script>", from) - from));
}

PageContent HostileContent() {
  PageContent content = ContentWithLosses();
  Account& account = content.account;
  account.losses.push_back({LossKind::kNote, 1, kHostile, kHostile});
  account.findings.push_back({kHostile, 2, kHostile, kHostile});
  account.warnings.push_back({kHostile, kHostile});
  account.folders.push_back({kHostile, 1, 1});
  account.audit = {kHostile, kHostile, kHostile, kHostile, kHostile, kHostile, false, {}, {}, true};
  content.database = {kHostile, kHostile, kHostile};
  content.views.push_back({3, {kHostile, false}, {}});
  content.views[0].content.documents = 1;
  content.views[0].content.first.push_back(
      {EntryKind::kDocument, kHostile, 1, false, {kHostile}, false});
  content.outcomeReading = OutcomeReading::kRead;
  content.outcome.state = Outcome::State::kEnded;
  content.outcome.exitCode = ExitCode::kLosses;
  for (std::string* const text :
       {&content.outcome.reason, &content.outcome.host, &content.outcome.user,
        &content.outcome.larkspanVersion, &content.outcome.consoleVersion, &content.outcome.started,
        &content.outcome.ended, &content.folder, &content.made, &content.version})
    *text = kHostile;
  content.outcome.restarts = {{"", 1, kHostile}};
  content.outcome.stop = Stop{kHostile, kHostile};
  content.outcome.warnings = {{kHostile, kHostile}};
  return content;
}

TEST(PageTest, NoTextOfOthersComesToLife) {
  const std::string harmless = RenderedPage(ContentWithLosses());
  const std::string page = RenderedPage(HostileContent());
  EXPECT_EQ(TimesIn(page, "<script"), TimesIn(harmless, "<script"));
  EXPECT_EQ(TimesIn(page, "</script"), TimesIn(harmless, "</script"));
  EXPECT_FALSE(PageHas(page, "<img"));
  EXPECT_FALSE(PageHas(page, "<script>"));  // The page's own scripts all have attributes.
  EXPECT_FALSE(PageHas(page, "\"&'"));
  EXPECT_TRUE(PageHas(page, "&lt;/script&gt;&lt;script&gt;alert(&#39;&quot;&amp;&#39;)"));
  EXPECT_EQ(NoticesData(page)["rows"][0][3], kHostile);
}

TEST(PageTest, ATextThatNamesAPartOfTheFrameIsText) {
  PageContent content = ContentWithLosses();
  content.database.title = "{{script}} {{nonce}}";
  const std::string page = RenderedPage(content);
  EXPECT_TRUE(PageHas(page, "<h1 dir=\"auto\">{{script}} {{nonce}}</h1>"));
  EXPECT_EQ(TimesIn(page, kNonce), 4u);
}

TEST(PageTest, ASealedFolderSaysSoAndWhatBecameOfItsBag) {
  PageContent content = ContentWithLosses();
  EXPECT_FALSE(PageHas(RenderedPage(content), "Sealed"));
  content.bag.emplace();
  EXPECT_TRUE(
      PageHas(RenderedPage(content), "<dt>Sealed</dt><dd dir=\"auto\">The bag is valid.</dd>"));
  content.bag->errors.resize(2);
  EXPECT_TRUE(PageHas(RenderedPage(content), ">The bag is not valid: 2 errors.<"));
}

TEST(PageTest, LettersOfAllLanguagesStandAsTheyAre) {
  PageContent content = ContentWithLosses();
  content.database.title = "Glash\xC3\xA4user \xE3\x83\x84\xE3\x83\x90\xE3\x82\xAD";
  content.account.losses[0].cause =
      "R\xC3\xBC"
      "be\x01 \xE3\x83\x84";
  const std::string page = RenderedPage(content);
  EXPECT_TRUE(PageHas(
      page, "<h1 dir=\"auto\">Glash\xC3\xA4user \xE3\x83\x84\xE3\x83\x90\xE3\x82\xAD</h1>"));
  EXPECT_TRUE(PageHas(page,
                      "R\xC3\xBC"
                      "be\xEF\xBF\xBD \xE3\x83\x84</td>"));
  EXPECT_EQ(NoticesData(page)["rows"][0][3],
            "R\xC3\xBC"
            "be\xEF\xBF\xBD \xE3\x83\x84");
}

TEST(PageTest, NothingIsFetched) {
  const std::string page = RenderedPage(ContentWithLosses());
  for (const char* const part : {"http:", "https:", "\"//", " src=", "url(", "@import", "fetch("})
    EXPECT_FALSE(PageHas(page, part)) << part;
  EXPECT_EQ(TimesIn(page, " href="), 1u);  // The empty picture that keeps browsers from asking.
  EXPECT_TRUE(PageHas(page, "href=\"data:,\""));
  EXPECT_TRUE(PageHas(page,
                      "default-src 'none'; style-src 'nonce-0123456789abcdef'; "
                      "script-src 'nonce-0123456789abcdef'; img-src data:;"));
}

TEST(PageTest, NoStyleAndNoHandlerStandsInAnElement) {
  const std::string page = RenderedPage(ContentWithLosses());
  EXPECT_FALSE(PageHas(page, " style=\""));
  EXPECT_FALSE(PageHas(page, " onclick="));
}

TEST(PageTest, TheVerdictStandsInWordsWithItsCode) {
  PageContent content = ContentWithLosses();
  EXPECT_TRUE(PageHas(RenderedPage(content),
                      "<strong>Done, with losses</strong><p>Every listed note is "
                      "accounted for. Missing: 3 notes and 1 note&#39;s pictures.</p>"));
  EXPECT_TRUE(PageHas(RenderedPage(content), "exit code 3"));
  content.verdict = ExitCode::kIncomplete;
  content.account.findings = {{"missing", 1, "data/00000001.dxl", "is missing"}};
  EXPECT_TRUE(PageHas(RenderedPage(content),
                      "<strong>Not accounted for</strong><p>1 thing is not as the "
                      "export must have left it."));
  content = PageContent();
  content.account.notes.listed = content.account.notes.exported = 2;
  EXPECT_TRUE(
      PageHas(RenderedPage(content), "<strong>Whole</strong><p>All 2 listed notes are exported"));
  EXPECT_TRUE(PageHas(RenderedPage(content), "exit code 0"));
}

TEST(PageTest, TheLargeNumbersAreThoseOfTheAccount) {
  PageContent content = ContentWithLosses();
  content.account.notes = {1234567, 1230000, 10, 0, 4000, 500, 60, 7};
  const std::string page = RenderedPage(content);
  EXPECT_TRUE(PageHas(page, "<dt>Notes listed</dt><dd class=\"large\">1,234,567</dd>"));
  EXPECT_TRUE(PageHas(page, "<dt>Exported</dt><dd class=\"large\">1,230,000</dd>"));
  EXPECT_TRUE(
      PageHas(page, "<dt>Lost</dt><dd class=\"large\">4,000</dd><dd class=\"small\">0.3 % of all"));
  EXPECT_TRUE(PageHas(page, "<dt>Not accounted for</dt><dd class=\"large\">567</dd>"));
  EXPECT_TRUE(
      PageHas(page, "<dt>Size</dt><dd class=\"large\">5.1 MB</dd><dd class=\"small\">61 files"));
}

TEST(PageTest, ASmallPartIsNotNothing) {
  PageContent content = ContentWithLosses();
  content.account.notes = {100000, 99999, 0, 0, 1, 0, 0, 0};
  const std::string page = RenderedPage(content);
  EXPECT_TRUE(PageHas(page, "<dd class=\"small\">99.9 % of all</dd>"));
  EXPECT_TRUE(PageHas(page, "<dd class=\"small\">less than 0.1 % of all</dd>"));
}

TEST(PageTest, FoldersHaveNumbersAndBars) {
  const std::string page = RenderedPage(ContentWithLosses());
  EXPECT_TRUE(PageHas(page,
                      "aria-label=\"40 of 61 files\"><rect class=\"track\" width=\"200\" "
                      "height=\"6\"/><rect class=\"bar\" width=\"200\" height=\"6\"/>"));
  EXPECT_TRUE(PageHas(page,
                      "aria-label=\"15 of 61 files\"><rect class=\"track\" width=\"200\" "
                      "height=\"6\"/><rect class=\"bar\" width=\"75\" height=\"6\"/>"));
}

TEST(PageTest, TheExportIsToldFromItsAuditReport) {
  const std::string page = RenderedPage(ContentWithLosses());
  for (const char* const fact : {"<dt>Database</dt><dd dir=\"auto\">register\\plants.nsf</dd>",
                                 "<dt>Server</dt><dd dir=\"auto\">Mill/Example</dd>",
                                 "<dt>Started</dt><dd dir=\"auto\">11/22/26 08:03:34 UTC</dd>",
                                 "<dt>Duration</dt><dd dir=\"auto\">2 min</dd>",
                                 "<dt>Notes user</dt><dd dir=\"auto\">CN=Ada Quill/O=Example</dd>",
                                 "<dt>Full access</dt><dd dir=\"auto\">yes</dd>",
                                 "<dt>End</dt><dd dir=\"auto\">came to the end of its list</dd>"})
    EXPECT_TRUE(PageHas(page, fact)) << fact;
  EXPECT_FALSE(PageHas(page, "<dt>Run by</dt>"));
}

TEST(PageTest, TheRecordOfTheRunTellsMore) {
  PageContent content = ContentWithLosses();
  content.outcomeReading = OutcomeReading::kRead;
  Outcome& outcome = content.outcome;
  outcome.state = Outcome::State::kEnded;
  outcome.exitCode = ExitCode::kStopped;
  outcome.reason = "Ctrl-C.";
  outcome.host = "GARDEN-07";
  outcome.user = "EXAMPLE\\ada";
  outcome.started = "2026-11-22T07:00:00Z";
  outcome.ended = "2026-11-22T09:30:00Z";
  outcome.restarts = {{"", 0x202, "crash"}, {"", 0x20A, "stall"}};
  outcome.stop = Stop{"2026-11-22T09:29:00Z", "user"};
  const std::string page = RenderedPage(content);
  for (const char* const fact :
       {"<dd dir=\"auto\">2026-11-22 07:00:00 UTC</dd>", "<dd dir=\"auto\">2 h 30 min</dd>",
        "<dd dir=\"auto\">EXAMPLE\\ada on GARDEN-07</dd>",
        "<dd dir=\"auto\">exit code 4, stopped by the user: Ctrl-C.</dd>",
        "<dd dir=\"auto\">2 restarts, the last after a stall at note 0000020A</dd>",
        "<dd dir=\"auto\">asked for by user at 2026-11-22 09:29:00 UTC</dd>"})
    EXPECT_TRUE(PageHas(page, fact)) << fact;
}

TEST(PageTest, ARunWithoutAnEndIsSaidToHaveNone) {
  PageContent content = ContentWithLosses();
  content.account.audit.cameToItsEnd = false;
  EXPECT_TRUE(PageHas(RenderedPage(content), "did not come to the end of its list"));
  content.outcomeReading = OutcomeReading::kRead;
  content.outcome.updated = "2026-11-22T09:29:00Z";
  EXPECT_TRUE(PageHas(RenderedPage(content),
                      "it ran at 2026-11-22 09:29:00 UTC, and goes on or was cut off"));
  content.outcomeReading = OutcomeReading::kUnreadable;
  EXPECT_TRUE(PageHas(RenderedPage(content), "not known: outcome.json cannot be read"));
}

TEST(PageTest, EveryRowIsInTheDataWhateverTheirNumber) {
  const PageContent content = ContentWithManyLosses(10000);
  const std::string page = RenderedPage(content);
  const nlohmann::json data = NoticesData(page);
  ASSERT_EQ(data["rows"].size(), 10005u);
  for (std::size_t i = 0; i < content.account.losses.size(); ++i) {
    const Loss& loss = content.account.losses[i];
    ASSERT_EQ(data["rows"][i][1], NoteIdText(*loss.id));
    ASSERT_EQ(data["rows"][i][3], loss.cause);
  }
  EXPECT_EQ(TimesIn(page, "<td class=\"kind "), 500u);
  EXPECT_TRUE(PageHas(page, "These are the first 500 of 10,005 rows."));
}

TEST(PageTest, FewRowsAllStandInThePage) {
  const std::string page = RenderedPage(ContentWithLosses());
  EXPECT_EQ(TimesIn(page, "<td class=\"kind "), 5u);
  EXPECT_FALSE(PageHas(page, "<noscript>"));
  EXPECT_TRUE(PageHas(page, "<option value=\"loss.note\">Note lost (3)</option>"));
  EXPECT_TRUE(PageHas(page, "<option value=\"\">All (5)</option>"));
}

TEST(PageTest, WithoutALossThereIsNoTable) {
  PageContent content = ContentWithLosses();
  content.account.losses.clear();
  content.account.warnings.clear();
  const std::string page = RenderedPage(content);
  EXPECT_TRUE(PageHas(page, "Nothing is lost, and there is nothing to warn of."));
  EXPECT_FALSE(PageHas(page, "notices-data\">"));
}

TEST(PageTest, ViewsHaveTheirCountsAndSayWhatIsLeftOut) {
  PageContent content = ContentWithLosses();
  ViewContent entries;
  entries.documents = 1200;
  entries.categories = 1;
  entries.whole = true;
  entries.first = {{EntryKind::kCategory, "", 0, false, {"Trees"}, false},
                   {EntryKind::kDocument, "000008FE", 9, true, {"Birch", "12"}, true}};
  content.views = {{0x14E, {"By Name", true}, entries}, {0x152, {"", false}, {}}};
  const std::string page = RenderedPage(content);
  EXPECT_TRUE(PageHas(page,
                      "<bdi class=\"name\">By Name</bdi> <span class=\"quiet\">folder <span "
                      "class=\"id\">0000014E</span></span> <span class=\"counts\">1,200 documents "
                      "\xC2\xB7 1 category</span>"));
  EXPECT_TRUE(PageHas(
      page, "<td class=\"id\">000008FE conflict</td><td class=\"in-5\">Birch</td><td>12</td>"));
  EXPECT_TRUE(PageHas(page, "The first 2 of 1,201 entries. Of each entry the first 12 values."));
  EXPECT_TRUE(PageHas(page, "<bdi class=\"name\">without a name</bdi>"));
  EXPECT_TRUE(PageHas(page, "The file is damaged, and was read up to there."));
}

TEST(PageTest, APlainExportHasNoViews) {
  PageContent content = ContentWithLosses();
  content.account.archive = false;
  const std::string page = RenderedPage(content);
  EXPECT_FALSE(PageHas(page, "Views and folders"));
  EXPECT_TRUE(PageHas(page, "plain export of design notes"));
}

TEST(PageTest, EachNonceIsNew) {
  EXPECT_EQ(MakeNonce().size(), 32u);
  EXPECT_NE(MakeNonce(), MakeNonce());
}

}  // namespace
}  // namespace larkspan::console
