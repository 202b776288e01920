// The table of findings, losses and warnings. Its first rows stand in the page, so that it can be
// read without a script; the script takes all of them from the data behind the table.
#include <algorithm>
#include <nlohmann/json.hpp>

#include "console/page/Html.h"
#include "console/page/Notices.h"
#include "console/page/Sections.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

std::string WordOf(NoticeGroup group) {
  switch (group) {
    case NoticeGroup::kLoss:
      return "loss";
    case NoticeGroup::kWarning:
      return "warning";
    case NoticeGroup::kFinding:
      break;
  }
  return "finding";
}

std::string HeadingOf(NoticeGroup group) {
  switch (group) {
    case NoticeGroup::kLoss:
      return "Losses";
    case NoticeGroup::kWarning:
      return "Warnings";
    case NoticeGroup::kFinding:
      break;
  }
  return "Findings";
}

std::string Choice(const std::string& word, const std::string& label, std::size_t count) {
  return "<option value=\"" + Html(word) + "\">" + Html(label) + " (" + GroupedText(count) +
         ")</option>";
}

// One group's kinds, under a choice that means all of them.
std::string Choices(const std::vector<NoticeKind>& kinds, NoticeGroup group) {
  std::string choices;
  std::size_t count = 0;
  for (const NoticeKind& kind : kinds) {
    if (kind.group != group) continue;
    choices += Choice(kind.word, kind.label, kind.count);
    count += kind.count;
  }
  if (count == 0) return {};
  const std::string heading = HeadingOf(group);
  return "<optgroup label=\"" + heading + "\">" + Choice(WordOf(group), "All " + heading, count) +
         choices + "</optgroup>";
}

std::string Controls(const Notices& notices) {
  return "<div class=\"controls\" id=\"controls\" role=\"search\" hidden>"
         "<label>Filter<input type=\"search\" id=\"filter\" autocomplete=\"off\" "
         "placeholder=\"ID, file, or words of the cause\"></label>"
         "<label>Kind<select id=\"kind\">" +
         Choice("", "All", notices.rows.size()) + Choices(notices.kinds, NoticeGroup::kFinding) +
         Choices(notices.kinds, NoticeGroup::kLoss) +
         Choices(notices.kinds, NoticeGroup::kWarning) +
         "</select></label><output id=\"count\" for=\"filter kind\"></output></div>\n";
}

std::string Row(const Notice& notice, const NoticeKind& kind) {
  return "<tr><td class=\"kind " + WordOf(kind.group) + "\">" + Html(kind.label) +
         "</td><td class=\"id\">" + Html(notice.id) + "</td><td class=\"where\">" +
         Html(notice.where) + "</td><td class=\"cause\">" + Html(notice.text) + "</td></tr>\n";
}

std::string Table(const Notices& notices) {
  std::string rows;
  for (std::size_t i = 0; i < std::min(notices.rows.size(), kStaticNotices); ++i)
    rows += Row(notices.rows[i], notices.kinds[notices.rows[i].kind]);
  return "<table class=\"notices\" id=\"notices\">\n<thead><tr>"
         "<th scope=\"col\" data-column=\"what\">What</th>"
         "<th scope=\"col\" data-column=\"note\">Note</th>"
         "<th scope=\"col\" data-column=\"where\">Where</th>"
         "<th scope=\"col\" data-column=\"cause\">Cause</th></tr></thead>\n"
         "<tbody id=\"notices-body\">\n" +
         rows + "</tbody>\n</table>\n";
}

std::string WithoutScript(std::size_t rows) {
  if (rows <= kStaticNotices) return {};
  return "<noscript><p class=\"note\">These are the first " + GroupedText(kStaticNotices) + " of " +
         GroupedText(rows) +
         " rows. The others show in a browser that runs the page's script; "
         "larkspan-console verify --json lists them too.</p></noscript>\n";
}

nlohmann::json Data(const Notices& notices) {
  nlohmann::json kinds = nlohmann::json::array();
  for (const NoticeKind& kind : notices.kinds)
    kinds.push_back({{"group", WordOf(kind.group)},
                     {"word", CleanText(kind.word)},
                     {"label", CleanText(kind.label)}});
  nlohmann::json rows = nlohmann::json::array();
  for (const Notice& notice : notices.rows)
    rows.push_back(nlohmann::json::array(
        {notice.kind, CleanText(notice.id), CleanText(notice.where), CleanText(notice.text)}));
  return {{"kinds", std::move(kinds)}, {"rows", std::move(rows)}};
}

}  // namespace

std::string NoticesSection(const PageContent& content) {
  const Notices notices = NoticesOf(content);
  const std::string begin =
      "<section aria-labelledby=\"told\">\n<h2 id=\"told\">Losses, findings and warnings</h2>\n";
  if (notices.rows.empty())
    return begin +
           "<p class=\"empty\">Nothing is lost, and there is nothing to warn of.</p>\n</section>\n";
  return begin + Controls(notices) + Table(notices) +
         "<p class=\"empty\" id=\"none\" hidden>Nothing matches the filter.</p>\n"
         "<button type=\"button\" id=\"more\" hidden>Show more</button>\n" +
         WithoutScript(notices.rows.size()) +
         R"(<script type="application/json" id="notices-data">)" + ScriptJson(Data(notices)) +
         "</script>\n</section>\n";
}

}  // namespace larkspan::console
