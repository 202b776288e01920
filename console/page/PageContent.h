// What the page about an export is made of, as plain values. Texts are UTF-8 of any content.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/account/Account.h"
#include "console/account/Outcome.h"
#include "console/bag/Bag.h"
#include "console/page/NotesFacts.h"
#include "console/page/ViewFile.h"

namespace larkspan::console {

// How many of its entries the page shows of a view, and of all views.
inline constexpr std::size_t kShownEntriesOfAView = 50;
inline constexpr std::size_t kShownEntriesOfAPage = 2000;

struct ViewOnPage {
  std::uint32_t id = 0;
  DesignFacts design;
  ViewContent content;
};

struct PageContent {
  ExitCode verdict = ExitCode::kWhole;
  Account account;
  OutcomeReading outcomeReading = OutcomeReading::kMissing;
  Outcome outcome;                // When it was read.
  std::optional<BagVerdict> bag;  // Of a sealed folder.
  DatabaseFacts database;
  std::vector<ViewOnPage> views;  // By name; those without one come last.
  std::string folder;             // As it was given.
  std::string made;               // The time now, in UTC.
  std::string version;            // Of the console.
};

// Reads what the files of an output folder tell of their database and its views.
void ReadDatabaseAndViews(const std::wstring& folder, PageContent& content);

}  // namespace larkspan::console
