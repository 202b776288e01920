// The account of a batch: a row for each database of its list.
#pragma once

#include <string>
#include <vector>

#include "console/batch/BatchEntry.h"

namespace larkspan::console {

inline constexpr wchar_t kSummaryTable[] = L"\\summary.csv";
inline constexpr wchar_t kSummaryPage[] = L"\\summary.html";

// Comma-separated, with a byte order mark, so that a spreadsheet takes it for UTF-8.
std::string SummaryTable(const std::vector<BatchEntry>& entries);

struct SummaryContent {
  std::string root;
  std::string list;     // The file, as it was given.
  std::string version;  // Of this program.
  std::string made;     // UTC.
  bool isRunning = false;
  std::vector<BatchEntry> entries;
};

// The page, with a random text that lets its own style and script in and no other.
std::string SummaryPage(const SummaryContent& content, const std::string& nonce);

// Writes both into the root, each whole or as it was before. False when one could not be, as while
// somebody holds it.
bool WriteSummary(const std::wstring& root, const SummaryContent& content);

}  // namespace larkspan::console
