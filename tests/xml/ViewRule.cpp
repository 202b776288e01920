#include "tests/xml/ViewRule.h"

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace larkspan {

namespace {

using nlohmann::json;

struct Damage {
  std::string_view title;
  Remains remains;
};

constexpr Damage kDamages[] = {
    {"$ViewFormat ends in the second descriptor", Remains::kAllEntries},
    {"$ViewFormat tells of 65535 columns", Remains::kAllEntries},
    {"$ViewFormat ends in a constant", Remains::kAllEntries},
    {"$ViewFormat has no header", Remains::kEntriesAlone},
    {"$ViewFormat is empty", Remains::kEntriesAlone},
    {"Reading fails after some entries", Remains::kNothing},
    {"Opening fails", Remains::kNothing},
    {"View note cannot be opened", Remains::kNothing},
    {"Purging fails", Remains::kAllEntries},
    {"Summary reaches past the buffer", Remains::kNothing},
    {"Value reaches past its summary", Remains::kAllEntries},
    {"Summary of length 0", Remains::kNothing},
    {"Summary with more items than it holds", Remains::kAllEntries},
    {"Index position with 65536 levels", Remains::kNothing},
    {"Entry ends in its counts", Remains::kNothing},
    {"Damaged values", Remains::kDamagedValues},
    {"Summary bytes that are none", Remains::kNothing},
};

const json* FindItem(const json& note, std::string_view name) {
  const auto items = note.find("items");
  if (items == note.end()) return nullptr;
  for (const json& item : *items) {
    if (item.at("name") == name) return &item;
  }
  return nullptr;
}

std::string TextOf(const json& note, std::string_view name) {
  const json* item = FindItem(note, name);
  return item == nullptr ? "" : item->value("text", "");
}

bool IsView(const json& note) {
  const json noteClass = note.value("class", json("document"));
  return noteClass == "view" || noteClass == "folder" || noteClass == 8;
}

bool HasFlagsOfExportedView(const json& note) {
  constexpr std::size_t kFlagsLooked = 99;
  const std::string flags = TextOf(note, "$Flags").substr(0, kFlagsLooked);
  const auto has = [&flags](const char* letters) {
    return flags.find_first_of(letters) != std::string::npos;
  };
  return has("F") ? !has("04n") : !has("G40n^");
}

// A format is made from the columns unless the file says that there is none.
bool HasFormat(const json& note) {
  const bool isMade = note.contains("view") && note.at("view").value("format", true);
  return isMade || FindItem(note, "$ViewFormat") != nullptr;
}

}  // namespace

Remains RemainsOf(const json& viewNote) {
  const std::string title = TextOf(viewNote, "$Title");
  for (const Damage& damage : kDamages) {
    if (damage.title == title) return damage.remains;
  }
  return Remains::kAllEntries;
}

std::vector<json> ExportedViews(const json& database) {
  std::vector<json> views;
  for (const json& note : database.value("notes", json::array())) {
    if (IsView(note) && HasFlagsOfExportedView(note) && HasFormat(note) &&
        RemainsOf(note) != Remains::kNothing) {
      views.push_back(note);
    }
  }
  return views;
}

}  // namespace larkspan
