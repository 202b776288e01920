// What a view shows: its columns, and the entries of its index in their order. Entries come from
// the file or, after those, are made on the fly, so that a view can have a hundred thousand of them
// without a large file. Does not change once made; any thread may call.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <vector>

#include "standin/EntryBytes.h"
#include "standin/ViewFormat.h"

namespace larkspan::standin {

// Note IDs that the library makes up are this far apart.
inline constexpr notes_api::NOTEID kNoteIdStep = 4;

// The most levels that a position can have.
inline constexpr std::size_t kMaxLevels = 32;

struct ViewEntry {
  IndexPosition position;
  Bytes bytes;  // as a reading gives them, well made or not
};

// What the file says of a view.
struct ViewDescription {
  std::vector<ViewColumn> columns;
  std::vector<ViewEntry> entries;
  std::size_t generatedEntries = 0;
  bool isIndexed = false;
};

class View {
 public:
  // Throws std::runtime_error when two entries have one position or too many are to be
  // made on the fly.
  explicit View(ViewDescription description);

  const std::vector<ViewColumn>& columns() const { return description_.columns; }

  // Whether the index is there before anybody opens it.
  bool isIndexed() const { return description_.isIndexed; }

  std::size_t entryCount() const;
  ViewEntry EntryAt(std::size_t index) const;

  // Which entry stands there; nothing when none does.
  std::optional<std::size_t> IndexOf(const IndexPosition& position) const;

 private:
  Bytes GeneratedEntry(std::size_t ordinal, const IndexPosition& position) const;

  ViewDescription description_;
  std::map<IndexPosition, std::size_t> indexes_;  // of the entries of the file
  notes_api::DWORD firstGenerated_ = 1;           // tumbler of the first generated entry
};

}  // namespace larkspan::standin
