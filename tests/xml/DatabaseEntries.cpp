// What a view's file must show, by what the database file says of its columns and entries. A value
// belongs to the next column that is no constant, whatever the column's name.
#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>

#include "tests/xml/DatabaseValue.h"
#include "tests/xml/ShownEntry.h"
#include "tests/xml/ViewRule.h"

namespace larkspan {

namespace {

using nlohmann::json;

constexpr char kDocument[] = "document";

// The constant of each column that has one.
using Columns = std::vector<std::optional<ShownValue>>;

Columns ColumnsOf(const json& viewNote) {
  Columns columns;
  if (RemainsOf(viewNote) == Remains::kEntriesAlone) return columns;
  for (const json& column : viewNote.at("view").value("columns", json::array())) {
    std::optional<ShownValue>& constant = columns.emplace_back();
    if (column.contains("constant")) constant = DatabaseValue(column.at("constant"));
  }
  return columns;
}

// A conflict is an item behind the values, and an empty text.
std::vector<ShownValue> OwnValues(const json& entry) {
  std::vector<ShownValue> values;
  for (const json& value : entry.value("values", json::array())) {
    values.push_back(DatabaseValue(value));
  }
  if (entry.contains("conflict")) values.push_back({"text", "", 0, {}});
  return values;
}

std::vector<ShownValue> InColumns(const std::vector<ShownValue>& own, const Columns& columns,
                                  bool isDocument) {
  std::vector<ShownValue> shown;
  std::size_t used = 0;
  for (const std::optional<ShownValue>& constant : columns) {
    const bool isUsedUp = used == own.size();
    if (isUsedUp && !(isDocument && constant)) break;
    shown.push_back(constant ? *constant : own[used++]);
  }
  return shown;
}

XmlAttributes DocumentAttributes(const std::string& noteId, unsigned long indent) {
  XmlAttributes attributes = {{"noteId", noteId}};
  if (indent != 0) attributes["indent"] = std::to_string(indent);
  return attributes;
}

// Of an entry that is given byte by byte, the values are what is damaged. It begins with its note
// ID, lowest byte first; its indent stands behind three counts and a flag.
ShownEntry RawDocument(const std::string& digits) {
  constexpr std::size_t kIndentAt = 18;
  std::istringstream in(digits);
  const std::vector<std::string> bytes{std::istream_iterator<std::string>(in), {}};
  const std::string noteId = bytes.at(3) + bytes.at(2) + bytes.at(1) + bytes.at(0);
  const std::string indent = bytes.at(kIndentAt + 1) + bytes.at(kIndentAt);
  return {kDocument, DocumentAttributes(noteId, std::stoul(indent, nullptr, 16)), {}};
}

ShownEntry EntryWithoutValues(const json& entry) {
  ShownEntry shown = {
      kDocument, DocumentAttributes(entry.value("note", ""), entry.value("indent", 0U)), {}};
  for (const char* kind : {"category", "total", "partial"}) {
    if (!entry.contains(kind)) continue;
    shown.element = kind;
    shown.attributes.erase("noteId");
  }
  if (entry.contains("conflict")) shown.attributes["conflict"] = "true";
  return shown;
}

}  // namespace

std::vector<ShownEntry> DatabaseEntries(const json& viewNote) {
  std::vector<ShownEntry> entries;
  if (!viewNote.contains("view")) return entries;
  const Columns columns = ColumnsOf(viewNote);
  for (const json& entry : viewNote.at("view").value("entries", json::array())) {
    if (entry.contains("rawEntry")) {
      entries.push_back(RawDocument(entry.at("rawEntry").get<std::string>()));
      continue;
    }
    ShownEntry& shown = entries.emplace_back(EntryWithoutValues(entry));
    shown.values = InColumns(OwnValues(entry), columns, shown.element == kDocument);
  }
  return entries;
}

}  // namespace larkspan
