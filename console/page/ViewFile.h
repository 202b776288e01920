// What a view's file holds: how many entries of each kind, and the first of them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace larkspan::console {

// The longest text of a value, and the most values of an entry, that are kept.
inline constexpr std::size_t kShownCharacters = 160;
inline constexpr std::size_t kShownValues = 12;

enum class EntryKind { kDocument, kCategory, kTotal, kPartial };

struct ViewEntry {
  EntryKind kind = EntryKind::kDocument;
  std::string noteId;  // Of a document, as it stands there.
  unsigned indent = 0;
  bool conflict = false;
  std::vector<std::string> values;  // In words, cut.
  bool hasMoreValues = false;
};

struct ViewContent {
  std::uint64_t documents = 0;
  std::uint64_t categories = 0;
  std::uint64_t totals = 0;
  std::uint64_t partials = 0;
  std::uint64_t conflicts = 0;
  std::vector<ViewEntry> first;
  bool whole = false;  // The file was read to its end.

  std::uint64_t Entries() const { return documents + categories + totals + partials; }
};

// Counts all entries and keeps the first ones.
ViewContent ReadViewFile(const std::wstring& path, std::size_t keep);

// A date-time of a view in a form for people: "2024-01-31 14:30:05 UTC". Any other text as it is.
std::string DateTimeText(const std::string& text);

}  // namespace larkspan::console
