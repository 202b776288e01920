// How many files lie in which folder, and how large they are: a table whose numbers have bars.
#include <algorithm>
#include <cmath>
#include <map>

#include "console/page/Html.h"
#include "console/page/Sections.h"
#include "console/text/Sizes.h"

namespace larkspan::console {

namespace {

std::string WhatIsIn(const std::string& folder) {
  static const std::map<std::string, std::string> kWords = {
      {"data", "documents"},
      {"design", "design notes"},
      {"design2", "raw copies of design notes"},
      {"profile", "profile documents"},
      {"views", "content of views"},
      {"", "properties, access control list, lists, reports"}};
  const auto found = kWords.find(folder);
  return found == kWords.end() ? "" : found->second;
}

// The bar is as long as the number's share of the largest one. A number above zero always shows.
std::string Bar(std::uint64_t number, std::uint64_t largest, const std::string& words) {
  constexpr std::uint64_t kLength = 200;
  const double share =
      largest == 0 ? 0 : static_cast<double>(number) / static_cast<double>(largest);
  const auto length = static_cast<std::uint64_t>(std::lround(share * kLength));
  return R"(<svg viewBox="0 0 200 6" preserveAspectRatio="none" role="img" aria-label=")" +
         Html(words) +
         R"("><rect class="track" width="200" height="6"/><rect class="bar" width=")" +
         std::to_string(number > 0 ? std::max<std::uint64_t>(length, 2) : 0) +
         R"(" height="6"/></svg>)";
}

struct Totals {
  std::uint64_t files = 0;
  std::uint64_t bytes = 0;
};

std::string FolderRow(const FolderCount& folder, const Totals& all, const Totals& largest) {
  const std::string name = folder.name.empty() ? "the folder itself" : folder.name;
  const std::string words = WhatIsIn(folder.name);
  return "<tr><th scope=\"row\">" + Html(name) +
         (words.empty() ? "" : "<small>" + words + "</small>") + "</th><td class=\"number\">" +
         GroupedText(folder.files) +
         Bar(folder.files, largest.files,
             GroupedText(folder.files) + " of " + CountText(all.files, "file", "files")) +
         "</td><td class=\"number\">" + BytesText(folder.bytes) +
         Bar(folder.bytes, largest.bytes, BytesText(folder.bytes) + " of " + BytesText(all.bytes)) +
         "</td></tr>\n";
}

}  // namespace

std::string FoldersSection(const Account& account) {
  Totals all;
  Totals largest;
  for (const FolderCount& folder : account.folders) {
    all = {all.files + folder.files, all.bytes + folder.bytes};
    largest = {std::max(largest.files, folder.files), std::max(largest.bytes, folder.bytes)};
  }
  std::string rows;
  for (const FolderCount& folder : account.folders) rows += FolderRow(folder, all, largest);
  return "<section class=\"folders\" aria-labelledby=\"folders\">\n"
         "<h2 id=\"folders\">Files by folder</h2>\n<table>\n<thead><tr>"
         "<th scope=\"col\">Folder</th><th scope=\"col\" class=\"number\">Files</th>"
         "<th scope=\"col\" class=\"number\">Size</th></tr></thead>\n<tbody>\n" +
         rows + "</tbody>\n<tfoot><tr><th scope=\"row\">All</th><td class=\"number\">" +
         GroupedText(all.files) + "</td><td class=\"number\">" + BytesText(all.bytes) +
         "</td></tr></tfoot>\n</table>\n</section>\n";
}

}  // namespace larkspan::console
