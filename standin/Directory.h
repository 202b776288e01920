// A data directory as a search shows it: databases and folders, each with a summary. Entries are
// given, or made on the fly behind those, so that a directory can have ten thousand databases
// without a large file. Does not change once made; any thread may call.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "notes/NotesApi.h"
#include "standin/Bytes.h"

namespace larkspan::standin {

struct DirectoryEntry {
  notes_api::TIMEDATE identifier = {};  // bytes 8 to 15 of the match
  bool isFolder = false;
  Bytes summary;  // at most 65,535 bytes
};

// What is known of a database that lies in a directory. Texts are in the Notes character set.
struct ListedDatabase {
  std::string path;                 // below the data directory, with backslashes
  std::optional<std::string> info;  // the database information
  std::optional<double> bytes;      // the size
  notes_api::DatabaseId replicaId = {};
  std::optional<notes_api::TIMEDATE> dataModified;
  std::optional<notes_api::TIMEDATE> designModified;
};

// What is not known is missing in the summary.
DirectoryEntry MakeDatabaseEntry(const ListedDatabase& database);
DirectoryEntry MakeFolderEntry(const std::string& path);

class Directory {
 public:
  // Behind the entries come the given number of generated ones. The path is what the library tells
  // of the directory's; nothing = the one by which it is opened.
  Directory(std::optional<std::string> path, std::vector<DirectoryEntry> entries,
            std::size_t generated);

  const std::optional<std::string>& path() const { return path_; }

  std::size_t entryCount() const { return entries_.size() + generated_; }
  DirectoryEntry EntryAt(std::size_t index) const;

 private:
  std::optional<std::string> path_;
  std::vector<DirectoryEntry> entries_;
  std::size_t generated_;
};

}  // namespace larkspan::standin
