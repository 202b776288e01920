#include "standin/ViewReader.h"

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "standin/ItemValues.h"
#include "standin/JsonValues.h"
#include "standin/ValueReader.h"

namespace larkspan::standin {

namespace {

using nlohmann::json;

constexpr char kConflictItem[] = "$Conflict";
constexpr notes_api::NOTEID kKindBits = 0xC0000000;

struct NamedKind {
  const char* key;
  notes_api::NOTEID bits;
};

constexpr NamedKind kKinds[] = {
    {"category", 0x80000000}, {"total", 0xC0000000}, {"partial", 0x40000000}};

// Entries that are no documents get running numbers for note IDs.
notes_api::NOTEID ReadEntryId(const json& from, std::size_t ordinal) {
  for (const NamedKind& kind : kKinds) {
    if (!from.value(kind.key, false)) continue;
    if (from.contains("note")) throw std::runtime_error("an entry is of two kinds");
    return kind.bits | (static_cast<notes_api::NOTEID>(ordinal + 1) * kNoteIdStep & ~kKindBits);
  }
  const notes_api::NOTEID id = HexadecimalValue(from.at("note"));
  if ((id & kKindBits) != 0) throw std::runtime_error("no document has such a note ID");
  return id;
}

ViewColumn ReadColumn(const json& from, std::size_t ordinal) {
  RequireKeys(from, {"item", "title", "formula", "constant", "comment"});
  ViewColumn column;
  column.item = NotesTextValue(from.value("item", json("$" + std::to_string(ordinal + 1))));
  column.title = NotesTextValue(from.value("title", json("")));
  column.formula = NotesTextValue(from.value("formula", json("")));
  if (from.contains("constant")) column.constant = ReadViewValue(from.at("constant"));
  return column;
}

// Gives entries that have no position of their own one, by their indent: the number of the entry
// among its siblings, behind the position of its parent.
class PositionCounter {
 public:
  IndexPosition Next(const json& from) {
    if (from.contains("position")) {
      last_ = from.at("position").get<IndexPosition>();
    } else {
      Advance(from.value("indent", std::size_t{0}));
    }
    if (last_.empty() || last_.size() > kMaxLevels || last_[0] == 0) {
      throw std::runtime_error("no entry can have such a position");
    }
    return last_;
  }

 private:
  void Advance(std::size_t indent) {
    if (indent >= kMaxLevels) throw std::runtime_error("so deep an entry needs a position");
    while (last_.size() < indent) last_.push_back(1);
    last_.resize(indent + 1, 0);
    ++last_[indent];
  }

  IndexPosition last_;
};

std::vector<std::string> SummaryNames(const std::vector<ViewColumn>& columns) {
  std::vector<std::string> names;
  for (const ViewColumn& column : columns) {
    if (column.constant.empty()) names.push_back(column.item);
  }
  return names;
}

// Constant columns take no value. Values past the last column have names of their own.
Bytes ReadSummary(const json& from, const std::vector<ViewColumn>& columns) {
  if (from.contains("summaryBytes")) return BytesValue(from.at("summaryBytes"));
  const std::vector<std::string> names = SummaryNames(columns);
  std::vector<SummaryItem> items;
  for (const json& value : from.value("values", json::array())) {
    const std::size_t ordinal = items.size();
    items.push_back({ordinal < names.size() ? names[ordinal] : "$More" + std::to_string(ordinal),
                     ReadViewValue(value)});
  }
  if (from.value("conflict", false)) {
    items.push_back({kConflictItem, MakeTextValue(notes_api::kTypeText, "")});
  }
  return MakeSummary(items);
}

Bytes ReadEntry(const json& from, const std::vector<ViewColumn>& columns, std::size_t ordinal,
                const IndexPosition& position) {
  if (from.contains("rawEntry")) {
    RequireKeys(from, {"rawEntry", "indent", "position", "comment"});
    return BytesValue(from.at("rawEntry"));
  }
  RequireKeys(from, {"note", "category", "total", "partial", "indent", "position", "counts", "flag",
                     "values", "conflict", "summaryBytes", "comment"});
  EntryHead head;
  head.id = ReadEntryId(from, ordinal);
  head.counts = from.value("counts", head.counts);
  head.flag = from.value("flag", head.flag);
  head.indent = from.value("indent", head.indent);
  return MakeEntry(head, position, ReadSummary(from, columns));
}

}  // namespace

std::shared_ptr<const View> ReadView(const json& from) {
  RequireKeys(from, {"columns", "entries", "generateEntries", "indexed", "format", "comment"});
  ViewDescription description;
  for (const json& column : from.value("columns", json::array())) {
    description.columns.push_back(ReadColumn(column, description.columns.size()));
  }
  PositionCounter positions;
  for (const json& entry : from.value("entries", json::array())) {
    const IndexPosition position = positions.Next(entry);
    const std::size_t ordinal = description.entries.size();
    description.entries.push_back(
        {position, ReadEntry(entry, description.columns, ordinal, position)});
  }
  description.generatedEntries = from.value("generateEntries", 0U);
  description.isIndexed = from.value("indexed", false);
  return std::make_shared<View>(std::move(description));
}

}  // namespace larkspan::standin
