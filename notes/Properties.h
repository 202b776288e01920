// What an open database tells of itself. Text is in the Notes character set.
#pragma once

#include <cstdint>
#include <string>

#include "notes/Handles.h"
#include "notes/NotesApi.h"
#include "notes/Status.h"

namespace larkspan {

// The path of an open database as the library tells it, at most 1,023 bytes.
Status GetDatabasePath(const Database& database, std::string& path);

inline constexpr std::uint32_t kBytesPerKilobyte = 1024;

struct DatabaseLocation {
  std::string server;  // At most 255 bytes; empty for a local database.
  std::string file;    // At most 255 bytes.
};

// Where an open database lies. A part that the library cannot tell is empty.
DatabaseLocation GetDatabaseLocation(const Database& database);

// The current size in bytes of the database with this path, the path with which it was opened.
Status GetDatabaseSize(const std::string& path, std::uint64_t& bytes);

Status GetReplicaId(const Database& database, notes_api::DatabaseId& id);

// The title in a database's information, which is ended with NUL; at most `limit` bytes, and that
// at most 1,023.
std::string ParseTitle(const char* info, std::uint16_t limit);

struct DatabaseTitles {
  std::string title;
  std::string categories;
};

// Either is empty when the database has none; each at most 1,023 bytes.
Status GetDatabaseTitles(const Database& database, DatabaseTitles& titles);

Status GetDatabaseId(const Database& database, notes_api::DatabaseId& id);

// Both in kilobytes, rounded down, at most 0xFFFFFFFF.
struct SpaceUsage {
  std::uint32_t size = 0;
  std::uint32_t used = 0;
};

Status GetSpaceUsage(const Database& database, SpaceUsage& usage);

struct ModifiedTimes {
  notes_api::TIMEDATE data{};
  notes_api::TIMEDATE other{};
};

// When data, and when anything else, was last changed.
Status GetModifiedTimes(const Database& database, ModifiedTimes& times);

}  // namespace larkspan
