// What an open database tells of itself. Text is in the Notes character set.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

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

// Where an open database lies; both empty when the library does not tell its path or cannot split
// it.
Status GetDatabaseLocation(const Database& database, DatabaseLocation& location);

// The current size in bytes of the database with this path, the path with which it was opened.
Status GetDatabaseSize(const std::string& path, std::uint64_t& bytes);

Status GetReplicaId(const Database& database, notes_api::DatabaseId& id);

// Room for a field of a database's information.
using InformationField = std::array<char, 1024>;

// The title in a database's information, which is ended with NUL; at most `limit` bytes, and that
// at most 1,023. The view is one of the field, of which the rest has no meaning.
std::string_view ParseTitle(const char* info, std::uint16_t limit, InformationField& field);

// The information of a database, as the library keeps it in one buffer.
class DatabaseInformation {
 public:
  Status Get(const Database& database);

  // Each is parsed when it is asked for; empty when the database has none, at most 1,023 bytes.
  std::string Title() const;
  std::string Categories() const;

 private:
  std::array<char, 1024> buffer_{};
};

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
