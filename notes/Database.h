// Opening a database and asking about it. Paths are in the Notes character set.
#pragma once

#include <cstdint>
#include <string>

#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

// Opens a database by its path ("server!!file" or "file") as the current user.
Status OpenDatabase(const std::string& path, Database& database);

// Opens it with the full access of an administrator, for which the library wants a list of names
// that holds the current user's.
Status OpenDatabaseFullAccess(const std::string& path, Database& database);

// The path of an open database as the library tells it, at most 1,023 bytes.
Status GetDatabasePath(const Database& database, std::string& path);

struct DatabaseLocation {
  std::string server;  // At most 255 bytes; empty for a local database.
  std::string file;    // At most 255 bytes.
};

// Where an open database lies. A part that the library cannot tell is empty.
DatabaseLocation GetDatabaseLocation(const Database& database);

// The current size in bytes of the database with this path, the path with which it was opened.
Status GetDatabaseSize(const std::string& path, std::uint64_t& bytes);

}  // namespace larkspan
