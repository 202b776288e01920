// What a database tells of itself apart from its notes. Texts are UTF-8.
#pragma once

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "notes/NotesApi.h"

namespace larkspan::standin {

// Sizes of databases are told in these.
inline constexpr notes_api::DWORD kKilobyte = 1024;

struct AclEntry {
  std::string name;
  std::string level;
  std::vector<std::string> roles;
};

// The file is handed out in pieces of one size.
struct SpaceUsage {
  notes_api::DWORD allocatedGranules = 0;
  notes_api::DWORD freeGranules = 0;
  notes_api::DWORD granuleBytes = 0;
};

struct DatabaseProperties {
  std::string title;
  std::string categories;
  notes_api::ReplicaInfo replicaInfo = {};
  notes_api::DatabaseId databaseId = {};
  bool fullAccessOnly = false;
  SpaceUsage space;
  std::optional<notes_api::QuotaInfo> quota;
  std::uint32_t chunkBytes = 2000;
  std::vector<std::string> roles;
  std::vector<AclEntry> acl;

  // What the database says instead of the last changes of its notes.
  std::optional<notes_api::TIMEDATE> dataModified;
  std::optional<notes_api::TIMEDATE> designModified;
};

// Reads the keys of the database itself. Throws an exception derived from std::exception when one
// of them does not fit.
DatabaseProperties ReadDatabaseProperties(const nlohmann::json& from, std::uint64_t fileBytes);

}  // namespace larkspan::standin
