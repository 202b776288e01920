#include "standin/FolderListing.h"

#include <algorithm>
#include <map>
#include <memory>
#include <nlohmann/json.hpp>

#include "standin/CharacterSet.h"
#include "standin/DatabaseInfo.h"
#include "standin/DatabaseProperties.h"
#include "standin/JsonValues.h"
#include "standin/Platform.h"
#include "standin/ReadOrReport.h"

namespace larkspan::standin {

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

// Paths in UTF-8, which sort the same way on every system, and where they lead.
using FoundFiles = std::map<std::string, fs::directory_entry>;

std::string PathBelow(const fs::path& folder, const fs::path& file) {
  std::string path = PathToUtf8(file.lexically_relative(folder));
  std::replace(path.begin(), path.end(), '/', '\\');
  return path;
}

bool IsDatabase(const fs::directory_entry& entry) {
  const std::string extension = PathToUtf8(entry.path().extension());
  return entry.is_regular_file() && (extension == ".nsf" || extension == ".NSF");
}

FoundFiles FindFiles(const fs::path& folder, const fs::path& hidden) {
  FoundFiles files;
  for (fs::recursive_directory_iterator at(folder); at != fs::end(at); ++at) {
    if (at->path() == hidden) {
      at.disable_recursion_pending();
    } else if (at->is_directory() || IsDatabase(*at)) {
      files.emplace(PathBelow(folder, at->path()), *at);
    }
  }
  return files;
}

// Only what the file says of itself: its size, the time of its last change and the like are
// another thing on each machine.
std::shared_ptr<ListedDatabase> ReadListed(const fs::path& file) {
  const json from = ReadJsonFile(file);
  const DatabaseProperties properties = ReadDatabaseProperties(from, 0);
  auto database = std::make_shared<ListedDatabase>();
  database->info = MakeDatabaseInfo(properties);
  database->replicaId = properties.replicaInfo.replicaId;
  database->dataModified = properties.dataModified;
  database->designModified = properties.designModified;
  if (from.contains("sizeKilobytes")) {
    database->bytes = from.at("sizeKilobytes").get<double>() * kKilobyte;
  }
  return database;
}

DirectoryEntry ListFile(const std::string& path, const fs::directory_entry& file) {
  const std::string notesPath = Utf8ToNotes(path);
  if (file.is_directory()) return MakeFolderEntry(notesPath);
  const auto read = ReadOrReport(file.path(), ReadListed);
  ListedDatabase database = read == nullptr ? ListedDatabase() : *read;
  database.path = notesPath;
  return MakeDatabaseEntry(database);
}

}  // namespace

std::vector<DirectoryEntry> ListFolder(const fs::path& folder, const fs::path& hidden) {
  std::vector<DirectoryEntry> entries;
  for (const auto& [path, file] : FindFiles(folder, hidden)) {
    entries.push_back(ListFile(path, file));
  }
  return entries;
}

}  // namespace larkspan::standin
