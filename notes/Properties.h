// What a database tells of itself. Text is in the Notes character set.
#pragma once

#include <cstdint>
#include <string>

#include "notes/Handles.h"
#include "notes/NotesApi.h"
#include "notes/Status.h"

namespace larkspan {

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
