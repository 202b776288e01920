#include "standin/DirectoryReader.h"

#include <cstdint>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "standin/EntryBytes.h"
#include "standin/FolderListing.h"
#include "standin/JsonValues.h"
#include "standin/ValueReader.h"

namespace larkspan::standin {

namespace {

using nlohmann::json;

constexpr std::size_t kMostSummaryBytes = 65535;

notes_api::TIMEDATE ReadIdentifier(const json& from) {
  const Bytes bytes = BytesValue(from);
  if (bytes.size() != sizeof(notes_api::TIMEDATE)) throw std::runtime_error("8 bytes are needed");
  return {{static_cast<notes_api::DWORD>(NumberAt(bytes.data(), 4)),
           static_cast<notes_api::DWORD>(NumberAt(bytes.data() + 4, 4))}};
}

Bytes ReadSummary(const json& from) {
  std::vector<SummaryItem> items;
  for (const auto& [name, value] : from.get_ref<const json::object_t&>()) {
    items.push_back({NotesTextValue(name), ReadViewValue(value)});
  }
  Bytes summary = MakeSummary(items);
  if (summary.size() > kMostSummaryBytes) throw std::runtime_error("a summary is too long");
  return summary;
}

DirectoryEntry ReadEntry(const json& from) {
  RequireKeys(from, {"items", "matchBytes", "folder", "comment"});
  DirectoryEntry entry;
  if (from.contains("matchBytes")) entry.identifier = ReadIdentifier(from.at("matchBytes"));
  entry.isFolder = from.value("folder", false);
  entry.summary = ReadSummary(from.value("items", json::object()));
  return entry;
}

std::vector<DirectoryEntry> ReadEntries(const json& from) {
  std::vector<DirectoryEntry> entries;
  for (const json& entry : from.get_ref<const json::array_t&>())
    entries.push_back(ReadEntry(entry));
  return entries;
}

// The number of each database must fit into 32 bits of its ID.
std::size_t ReadGenerated(const json& from) {
  const auto count = from.value("generate", std::int64_t{0});
  if (count < 0 || count > UINT32_MAX) throw std::runtime_error("so many databases cannot be");
  return static_cast<std::size_t>(count);
}

}  // namespace

std::shared_ptr<const Directory> ReadDirectory(const std::filesystem::path& folder,
                                               const std::filesystem::path& hidden) {
  const std::filesystem::path file = folder / "directory.json";
  const json from = std::filesystem::exists(file) ? ReadJsonFile(file) : json::object();
  RequireKeys(from, {"path", "entries", "generate", "comment"});
  std::optional<std::string> path;
  if (from.contains("path")) path = NotesTextValue(from.at("path"));
  const bool isListed = !from.contains("entries") && !from.contains("generate");
  std::vector<DirectoryEntry> entries =
      isListed ? ListFolder(folder, hidden) : ReadEntries(from.value("entries", json::array()));
  return std::make_shared<Directory>(std::move(path), std::move(entries), ReadGenerated(from));
}

}  // namespace larkspan::standin
