// The parts of the page, from top to bottom. Each gives whole elements.
#pragma once

#include <cstddef>
#include <string>

#include "console/page/PageContent.h"

namespace larkspan::console {

// Rows of the table that stand in the page itself; a script shows all, so many at a time.
inline constexpr std::size_t kStaticNotices = 500;

// What the database is called: its title, otherwise its path, otherwise the folder.
std::string TitleOf(const PageContent& content);

// Where it was, as the audit report and the export's own record say. Without a server that is this
// machine.
std::string PathOf(const PageContent& content);
std::string ServerOf(const PageContent& content);

// Title, verdict, and the large numbers.
std::string HeadSection(const PageContent& content);

// What was exported, when and by whom, and what lies in which folder.
std::string FactsSection(const PageContent& content);
std::string FoldersSection(const Account& account);

// The table of findings, losses and warnings, with all of its rows as data for the script.
std::string NoticesSection(const PageContent& content);

// The views, each with its first entries. Empty for a plain export, which has none.
std::string ViewsSection(const PageContent& content);

// What a verdict is called, and what it means for this account.
struct Verdict {
  std::string word;
  std::string sentence;
};

Verdict VerdictOf(ExitCode code, const Account& account);

}  // namespace larkspan::console
