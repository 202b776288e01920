// The top of the page: what this is about, the verdict, and the large numbers.
#include <algorithm>
#include <array>

#include "console/page/Html.h"
#include "console/page/Pieces.h"
#include "console/page/Sections.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

// "sample.nsf on this machine", of what is known.
std::string Place(const PageContent& content) {
  const std::string path = PathOf(content);
  if (path.empty()) return {};
  return R"(<p class="quiet"><bdi class="path">)" + Html(path) + "</bdi> on <bdi>" +
         Html(ServerOf(content)) + "</bdi></p>\n";
}

std::uint64_t NotAccountedFor(const NoteCounts& notes) {
  return notes.notReached + notes.contradicted + notes.unaccounted;
}

std::string PercentText(std::uint64_t part, std::uint64_t all) {
  if (part == 0 || all == 0) return {};
  const std::uint64_t tenths = part * 1000 / all;
  if (tenths == 0) return "less than 0.1 % of all";
  return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " % of all";
}

std::string NoteTiles(const NoteCounts& notes) {
  const std::string withLoss = notes.exportedWithLoss == 0
                                   ? PercentText(notes.exported, notes.listed)
                                   : GroupedText(notes.exportedWithLoss) + " of them with a loss";
  std::string tiles = Tile("Notes listed", GroupedText(notes.listed), "") +
                      Tile("Exported", GroupedText(notes.exported), withLoss) +
                      Tile("Lost", GroupedText(notes.lost), PercentText(notes.lost, notes.listed),
                           notes.lost > 0 ? "incomplete" : "");
  const std::uint64_t open = NotAccountedFor(notes);
  if (open > 0) {
    tiles += Tile("Not accounted for", GroupedText(open),
                  notes.notReached > 0 ? GroupedText(notes.notReached) + " never reached" : "",
                  "incomplete");
  }
  return tiles;
}

std::string ViewTile(const std::vector<ViewOnPage>& views) {
  std::uint64_t entries = 0;
  for (const ViewOnPage& view : views) entries += view.content.Entries();
  return Tile("Views and folders", GroupedText(views.size()),
              CountText(entries, "entry", "entries"));
}

std::string SizeTile(const Account& account) {
  std::uint64_t files = 0;
  std::uint64_t bytes = 0;
  for (const FolderCount& folder : account.folders) {
    files += folder.files;
    bytes += folder.bytes;
  }
  return Tile("Size", BytesText(bytes), CountText(files, "file", "files"));
}

struct Fate {
  const char* words;
  const char* style;
  std::uint64_t count;
};

// The picture of what became of the notes: one bar, cut in proportion.
std::string FatesPicture(const NoteCounts& notes) {
  const std::uint64_t whole =
      notes.exported - std::min(notes.exported, notes.exportedWithLoss + notes.contradicted);
  const std::array<Fate, 4> fates = {{{"exported whole", "whole", whole},
                                      {"exported with a loss", "losses", notes.exportedWithLoss},
                                      {"lost", "lost", notes.lost},
                                      {"not accounted for", "open", NotAccountedFor(notes)}}};
  std::uint64_t all = 0;
  for (const Fate& fate : fates) all += fate.count;
  if (all == 0) return {};
  std::string bars;
  std::string words;
  std::uint64_t before = 0;
  for (const Fate& fate : fates) {
    if (fate.count == 0) continue;
    bars += std::string("<rect class=\"fill-") + fate.style + R"(" x=")" +
            std::to_string(before * 1000 / all) + R"(" width=")" +
            std::to_string((before + fate.count) * 1000 / all - before * 1000 / all) +
            R"(" height="10"/>)";
    before += fate.count;
    words += std::string("<li class=\"tone-") + fate.style + "\">" + GroupedText(fate.count) + " " +
             fate.words + "</li>";
  }
  return "<div class=\"fates\"><svg viewBox=\"0 0 1000 10\" preserveAspectRatio=\"none\" "
         "aria-hidden=\"true\">" +
         bars + "</svg><ul>" + words + "</ul></div>\n";
}

}  // namespace

std::string PathOf(const PageContent& content) {
  const std::string& path = content.account.audit.path;
  return path.empty() ? content.database.path : path;
}

std::string ServerOf(const PageContent& content) {
  const std::string& server = content.account.audit.server;
  if (!server.empty()) return server;
  return content.outcome.server.empty() ? "this machine" : content.outcome.server;
}

std::string TitleOf(const PageContent& content) {
  if (!content.database.title.empty()) return content.database.title;
  const std::string path = PathOf(content);
  return path.empty() ? content.folder : path;
}

std::string HeadSection(const PageContent& content) {
  const Account& account = content.account;
  const Verdict verdict = VerdictOf(content.verdict, account);
  return "<header>\n<p class=\"over\">Export report</p>\n<h1 dir=\"auto\">" +
         Html(TitleOf(content)) + "</h1>\n" + Place(content) + "</header>\n" +
         Banner(content.verdict, verdict.word, verdict.sentence) + "<dl class=\"tiles\">\n" +
         NoteTiles(account.notes) + (account.archive ? ViewTile(content.views) : "") +
         SizeTile(account) + "</dl>\n" + FatesPicture(account.notes);
}

}  // namespace larkspan::console
