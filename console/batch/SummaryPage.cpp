// The page can be read without a script; the script filters and sorts its table.
#include <algorithm>
#include <array>
#include <cctype>

#include "base/Utf8.h"
#include "console/batch/BatchSentences.h"
#include "console/batch/Summary.h"
#include "console/page/Html.h"
#include "console/page/PageTexts.h"
#include "console/page/Pieces.h"
#include "console/show/StatusParts.h"
#include "console/text/Sizes.h"
#include "console/text/Times.h"

namespace larkspan::console {

namespace {

constexpr std::array<const char*, 8> kStates = {"failed",  "incomplete", "stopped", "losses",
                                                "running", "waiting",    "whole",   "folder"};

// The class of the style that colours a state.
const char* ToneOf(const std::string& state) {
  if (state == "whole") return "tone-whole";
  if (state == "losses") return "tone-losses";
  if (state == "failed" || state == "incomplete" || state == "stopped") return "tone-lost";
  return "tone-open";
}

// Of a folder below the root, as a link from the page.
std::string LinkTo(const std::wstring& folder, const std::string& root) {
  const std::string path = WideToUtf8(folder);
  std::string link;
  for (const char letter : path.substr(std::min(path.size(), root.size() + 1))) {
    const auto byte = static_cast<unsigned char>(letter);
    if (letter == '\\') {
      link += '/';
    } else if (std::isalnum(byte) != 0 || letter == '.' || letter == '-' || letter == '_') {
      link += letter;
    } else {
      link += '%';
      link += "0123456789ABCDEF"[byte >> 4];
      link += "0123456789ABCDEF"[byte & 15];
    }
  }
  return link + "/";
}

std::string NumberCell(const std::string& text, const std::string& value) {
  return R"(<td class="number" data-value=")" + value + "\">" + text + "</td>";
}

std::string CountCell(const std::optional<std::uint64_t>& number) {
  return number ? NumberCell(GroupedText(*number), std::to_string(*number)) : NumberCell("", "");
}

std::string NotesCell(const BatchEntry& entry) {
  if (!entry.counts) return NumberCell("", "");
  return NumberCell(
      GroupedText(entry.counts->exported) + " of " + GroupedText(entry.counts->listed),
      std::to_string(entry.counts->exported));
}

std::string TimeCell(const BatchEntry& entry) {
  const auto seconds = SecondsBetween(entry.since, entry.ended);
  return seconds ? NumberCell(DurationText(*seconds), std::to_string(*seconds))
                 : NumberCell("", "");
}

std::string NameCell(const BatchEntry& entry, const std::string& root) {
  const std::string name =
      "<bdi>" + Html(DatabaseName(entry.database.server, entry.database.path)) + "</bdi>";
  const std::string linked =
      entry.out.empty() ? name
                        : "<a href=\"" + Html(LinkTo(entry.out, root)) + "\">" + name + "</a>";
  const std::string& title = entry.database.title;
  return "<td class=\"where\">" + linked +
         (title.empty() ? "" : "<br><bdi class=\"quiet\">" + Html(title) + "</bdi>") + "</td>";
}

std::string Row(const BatchEntry& entry, const std::string& root) {
  const std::string state = StateWord(entry);
  const bool isJudged = entry.counts.has_value();
  return "<tr data-state=\"" + state + "\"><td class=\"kind " + ToneOf(state) + "\">" + state +
         "</td>" + NameCell(entry, root) + NotesCell(entry) +
         CountCell(isJudged ? std::optional(entry.losses) : std::nullopt) +
         CountCell(isJudged ? std::optional(entry.findings) : std::nullopt) + TimeCell(entry) +
         "<td class=\"cause\">" + Html(entry.reason) + "</td></tr>\n";
}

std::string Choices(const std::vector<BatchEntry>& entries) {
  std::string choices = "<option value=\"\">All (" + GroupedText(entries.size()) + ")</option>";
  for (const std::string state : kStates) {
    const auto count = std::count_if(entries.begin(), entries.end(), [&](const BatchEntry& entry) {
      return state == StateWord(entry);
    });
    if (count > 0)
      choices.append("<option value=\"")
          .append(state)
          .append("\">")
          .append(state)
          .append(" (" + GroupedText(static_cast<std::uint64_t>(count)) + ")</option>");
  }
  return choices;
}

std::string TableSection(const SummaryContent& content) {
  std::string rows;
  for (const BatchEntry& entry : content.entries) rows += Row(entry, content.root);
  return "<section>\n<h2>Databases</h2>\n"
         "<div class=\"controls\" id=\"controls\" role=\"search\" hidden>"
         "<label>Filter<input type=\"search\" id=\"filter\" autocomplete=\"off\" "
         "placeholder=\"Server, path, title, or words of the cause\"></label>"
         "<label>State<select id=\"state\">" +
         Choices(content.entries) +
         "</select></label><output id=\"count\" for=\"filter state\"></output></div>\n"
         "<div class=\"scroll\"><table class=\"databases\" id=\"databases\">\n<thead><tr>"
         "<th scope=\"col\">State</th><th scope=\"col\">Database</th>"
         "<th scope=\"col\" class=\"number\">Notes</th>"
         "<th scope=\"col\" class=\"number\">Losses</th>"
         "<th scope=\"col\" class=\"number\">Findings</th>"
         "<th scope=\"col\" class=\"number\">Time</th><th scope=\"col\">Cause</th></tr></thead>\n"
         "<tbody>\n" +
         rows + "</tbody>\n</table></div>\n</section>\n";
}

// What is left to do counts as a stop here: the batch is not whole.
ExitCode CodeOf(const SummaryContent& content, const BatchCounts& counts) {
  const ExitCode worst = WorstCode(content.entries);
  return counts.notBegun + counts.running > 0 ? WorseOf(worst, ExitCode::kStopped) : worst;
}

std::string WordOf(const SummaryContent& content, const BatchCounts& counts, ExitCode code) {
  if (content.isRunning) return "At work";
  return counts.notBegun > 0 ? "Not all is begun" : OutsetOfAll(code);
}

std::string Tiles(const BatchCounts& counts) {
  const std::uint64_t open = counts.notBegun + counts.running + counts.stopped;
  return "<dl class=\"tiles\">\n" +
         Tile("Databases", GroupedText(counts.all - counts.leftOut),
              counts.leftOut > 0 ? CountText(counts.leftOut, "folder", "folders") + " left out"
                                 : "") +
         Tile("Whole", GroupedText(counts.whole), "") +
         Tile("With losses", GroupedText(counts.withLosses), "",
              counts.withLosses > 0 ? "losses" : "") +
         Tile("Failed or incomplete", GroupedText(counts.failed + counts.incomplete), "",
              counts.failed + counts.incomplete > 0 ? "incomplete" : "") +
         Tile("Still to do", GroupedText(open), "", open > 0 ? "incomplete" : "") + "</dl>\n";
}

}  // namespace

std::string SummaryPage(const SummaryContent& content, const std::string& nonce) {
  const BatchCounts counts = CountEntries(content.entries);
  const ExitCode code = CodeOf(content, counts);
  PageParts parts;
  parts.title = content.root + " - batch";
  parts.version = content.version;
  parts.nonce = nonce;
  parts.script = kSummaryScript;
  parts.head = "<header>\n<p class=\"over\">Batch of exports</p>\n<h1 dir=\"auto\">" +
               Html(content.root) + "</h1>\n<p class=\"quiet\">The databases of <bdi>" +
               Html(content.list) + "</bdi></p></header>\n" +
               Banner(code, WordOf(content, counts, code), BatchCountsText(counts) + ".") +
               Tiles(counts);
  parts.notices = TableSection(content);
  parts.footer = "<p>Made by larkspan-console " + Html(content.version) + " on " +
                 Html(TimeText(content.made)) + ". The same rows stand in summary.csv.</p>";
  return FillFrame(parts);
}

}  // namespace larkspan::console
