// The views and folders of an archive, each with its counts, and its first entries when it is
// opened.
#include <algorithm>

#include "console/page/Html.h"
#include "console/page/Sections.h"
#include "console/text/Sizes.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

std::string CountsOf(const ViewContent& content) {
  if (content.Entries() == 0) return content.whole ? "empty" : "damaged";
  std::string text = CountText(content.documents, "document", "documents");
  const auto add = [&](std::uint64_t count, const std::string& one, const std::string& many) {
    if (count > 0) text += " \xC2\xB7 " + CountText(count, one, many);
  };
  add(content.categories, "category", "categories");
  add(content.totals, "total", "totals");
  add(content.partials, "partial entry", "partial entries");
  add(content.conflicts, "conflict", "conflicts");
  if (!content.whole) text += ", damaged";
  return text;
}

const char* WordOf(EntryKind kind) {
  switch (kind) {
    case EntryKind::kCategory:
      return "category";
    case EntryKind::kTotal:
      return "total";
    case EntryKind::kPartial:
      return "partial";
    case EntryKind::kDocument:
      break;
  }
  return "document";
}

// Indentation past the fifth level shows no more: a page has a width.
std::string IndentClass(unsigned indent) {
  return indent == 0 ? "" : " class=\"in-" + std::to_string(std::min(indent, 5U)) + "\"";
}

std::string EntryRow(const ViewEntry& entry, std::size_t columns) {
  const std::string what = entry.noteId.empty() ? WordOf(entry.kind) : entry.noteId;
  std::string row = std::string("<tr class=\"") + WordOf(entry.kind) + R"("><td class="id">)" +
                    Html(what) + (entry.conflict ? " conflict" : "") + "</td>";
  for (std::size_t i = 0; i < columns; ++i) {
    const std::string value = i < entry.values.size() ? entry.values[i] : "";
    row += "<td" + (i == 0 ? IndentClass(entry.indent) : "") + ">" + Html(value) + "</td>";
  }
  return row + "</tr>\n";
}

std::string HeaderRow(std::size_t columns) {
  std::string row = "<tr><th scope=\"col\">Entry</th>";
  for (std::size_t i = 1; i <= columns; ++i)
    row += "<th scope=\"col\">Value " + std::to_string(i) + "</th>";
  return row + "</tr>";
}

std::string EntriesTable(const std::vector<ViewEntry>& entries) {
  std::size_t columns = 0;
  for (const ViewEntry& entry : entries) columns = std::max(columns, entry.values.size());
  std::string rows;
  for (const ViewEntry& entry : entries) rows += EntryRow(entry, columns);
  return "<div class=\"scroll\" tabindex=\"0\" role=\"region\" "
         "aria-label=\"Entries\"><table>\n<thead>" +
         HeaderRow(columns) + "</thead>\n<tbody>\n" + rows + "</tbody>\n</table></div>\n";
}

// What is not shown is said.
std::string WhatIsLeftOut(const ViewContent& content) {
  std::string text;
  const std::uint64_t shown = content.first.size();
  if (shown < content.Entries()) {
    text = shown == 0 ? "Its entries are not shown: the page has as many as it can take."
                      : "The first " + GroupedText(shown) + " of " +
                            GroupedText(content.Entries()) + " entries.";
  }
  const bool hasMore = std::any_of(content.first.begin(), content.first.end(),
                                   [](const ViewEntry& entry) { return entry.hasMoreValues; });
  if (hasMore) text += " Of each entry the first " + std::to_string(kShownValues) + " values.";
  return text.empty() ? "" : "<p class=\"quiet\">" + text + "</p>\n";
}

std::string Inside(const ViewOnPage& view) {
  const ViewContent& content = view.content;
  std::string inside;
  if (!content.whole)
    inside += "<p class=\"fault\">The file is damaged, and was read up to there.</p>\n";
  if (content.whole && content.Entries() == 0)
    inside += "<p class=\"quiet\">It has no entries.</p>\n";
  if (!content.first.empty()) inside += EntriesTable(content.first);
  return inside + WhatIsLeftOut(content);
}

std::string ViewDetails(const ViewOnPage& view) {
  const std::string name = view.design.title.empty() ? "without a name" : view.design.title;
  return "<details><summary><bdi class=\"name\">" + Html(name) + "</bdi> <span class=\"quiet\">" +
         (view.design.isFolder ? "folder " : "view ") + "<span class=\"id\">" +
         NoteIdText(view.id) + "</span></span> <span class=\"counts\">" + CountsOf(view.content) +
         "</span></summary>\n<div class=\"inside\">\n" + Inside(view) + "</div></details>\n";
}

}  // namespace

std::string ViewsSection(const PageContent& content) {
  if (!content.account.archive) return {};
  std::string views;
  for (const ViewOnPage& view : content.views) views += ViewDetails(view);
  if (views.empty()) views = "<p class=\"empty\">The export holds no view.</p>\n";
  return "<section class=\"views\" aria-labelledby=\"views\">\n<h2 id=\"views\">Views and "
         "folders</h2>\n" +
         views +
         "<p class=\"note\">A view that is hidden, or that the library cannot read, has no file, "
         "and nothing "
         "tells the one from the other.</p>\n</section>\n";
}

}  // namespace larkspan::console
