#include "tests/standin/DirectorySearching.h"

#include "tests/standin/ViewReading.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

constexpr std::string_view kTextType("\x00\x05", 2);

STATUS LARKSPAN_NOTES_CALL Remember(void* context, SearchMatch* match, ItemTable* summary) {
  auto* const found = static_cast<FoundEntries*>(context);
  EXPECT_EQ(summary->length, match->summaryLength);
  const SummaryItems items =
      SummaryIn({reinterpret_cast<const char*>(summary), match->summaryLength});
  found->entries.push_back({*match, {items.begin(), items.end()}});
  return found->answer;
}

bool HasText(const FoundEntry& entry, const std::string& item) {
  const auto found = entry.items.find(item);
  return found != entry.items.end() && found->second.starts_with(kTextType);
}

}  // namespace

std::string FoundEntry::Text(const std::string& item) const {
  EXPECT_TRUE(HasText(*this, item)) << item;
  return HasText(*this, item) ? ToUtf8(items.at(item).substr(kTextType.size())) : std::string();
}

std::vector<std::string> FoundEntries::Paths() const {
  std::vector<std::string> paths;
  for (const FoundEntry& entry : entries) paths.push_back(entry.Text("$Path"));
  return paths;
}

FoundEntry FoundEntries::At(const std::string& path) const {
  for (const FoundEntry& entry : entries) {
    if (HasText(entry, "$Path") && entry.Text("$Path") == path) return entry;
  }
  ADD_FAILURE() << path << " was not found";
  return {};
}

STATUS OpenDirectory(const std::string& path, DHANDLE* directory) {
  return NSFDbOpen(ToNotes(std::string_view(path)).c_str(), directory);
}

FoundEntries SearchDirectory(DHANDLE directory, STATUS answer) {
  FoundEntries found;
  found.answer = answer;
  found.status =
      NSFSearch(directory, 0, nullptr, 0x0006, 0x200A, nullptr, Remember, &found, nullptr);
  return found;
}

FoundEntries SearchPath(const std::string& path) {
  DHANDLE directory = 0;
  EXPECT_EQ(OpenDirectory(path, &directory), 0) << path;
  FoundEntries found = SearchDirectory(directory);
  EXPECT_EQ(found.status, 0);
  EXPECT_EQ(NSFDbClose(directory), 0);
  return found;
}

}  // namespace larkspan::standin_test
