#include "standin/View.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "standin/ItemValues.h"
#include "standin/Times.h"

namespace larkspan::standin {

namespace {

constexpr notes_api::NOTEID kFirstGeneratedId = 0x1000;
constexpr notes_api::NOTEID kLastDocumentId = 0x3FFFFFFF;
constexpr std::size_t kGeneratedKinds = 3;
constexpr std::size_t kDaysUsed = 20 * 365;

// Columns take turns in texts, numbers and dates.
Bytes GeneratedValue(std::size_t ordinal, std::size_t column) {
  switch (column % kGeneratedKinds) {
    case 0:
      return MakeTextValue(notes_api::kTypeText, "Seed lot " + std::to_string(ordinal));
    case 1:
      return MakeNumberValue(static_cast<double>(ordinal));
    default: {
      const auto days = static_cast<std::int64_t>(ordinal % kDaysUsed);
      notes_api::TIMEDATE date = MakeTimeDate({2000, 1, 1}, days * kHundredthsPerDay);
      date.innards[0] = kNoTimePart;
      return MakeTimeValue(date);
    }
  }
}

}  // namespace

View::View(ViewDescription description) : description_(std::move(description)) {
  for (const ViewEntry& entry : description_.entries) {
    if (!indexes_.emplace(entry.position, indexes_.size()).second) {
      throw std::runtime_error("two entries of a view have one position");
    }
    firstGenerated_ = std::max(firstGenerated_, entry.position[0] + 1);
  }
  if (description_.generatedEntries > (kLastDocumentId - kFirstGeneratedId) / kNoteIdStep) {
    throw std::runtime_error("note IDs do not last for so many entries");
  }
}

std::size_t View::entryCount() const {
  return description_.entries.size() + description_.generatedEntries;
}

ViewEntry View::EntryAt(std::size_t index) const {
  if (index < description_.entries.size()) return description_.entries[index];
  const std::size_t ordinal = index - description_.entries.size();
  const IndexPosition position = {firstGenerated_ + static_cast<notes_api::DWORD>(ordinal)};
  return {position, GeneratedEntry(ordinal, position)};
}

Bytes View::GeneratedEntry(std::size_t ordinal, const IndexPosition& position) const {
  std::vector<SummaryItem> items;
  for (const ViewColumn& column : columns()) {
    if (!column.constant.empty()) continue;
    items.push_back({column.item, GeneratedValue(ordinal, items.size())});
  }
  EntryHead head;
  head.id = kFirstGeneratedId + static_cast<notes_api::NOTEID>(ordinal) * kNoteIdStep;
  return MakeEntry(head, position, MakeSummary(items));
}

std::optional<std::size_t> View::IndexOf(const IndexPosition& position) const {
  const auto found = indexes_.find(position);
  if (found != indexes_.end()) return found->second;
  if (position.size() != 1 || position[0] < firstGenerated_) return std::nullopt;
  const std::size_t ordinal = position[0] - firstGenerated_;
  if (ordinal >= description_.generatedEntries) return std::nullopt;
  return description_.entries.size() + ordinal;
}

}  // namespace larkspan::standin
