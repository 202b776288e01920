// What db.dxl must tell, by what the database file says and by what holds where it says nothing.
#include <algorithm>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "tests/xml/DatabaseValue.h"
#include "tests/xml/ShownProperties.h"

namespace larkspan {

namespace {

using nlohmann::json;

constexpr std::uint64_t kKilobyte = 1024;

std::string ReplicaId(const json& database) {
  return database.value("replicaId", "C12583D0004D1A2B");
}

// A database that names no ID has that of its replica, with the last eight digits inverted.
std::string DatabaseId(const json& database) {
  if (database.contains("databaseId")) return database.at("databaseId").get<std::string>();
  const std::string replica = ReplicaId(database);
  char inverted[9] = "";
  std::snprintf(inverted, sizeof inverted, "%08X",
                ~static_cast<unsigned int>(std::stoul(replica.substr(8), nullptr, 16)));
  return replica.substr(0, 8) + inverted;
}

struct Space {
  std::uint64_t kilobytes;
  std::uint64_t usedKilobytes;
};

// The file is handed out in granules; sizes are told in whole kilobytes.
Space SpaceOf(const json& database, std::uintmax_t fileBytes) {
  const json space = database.value("space", json::object());
  const std::uint64_t size =
      database.value("sizeKilobytes", std::uint64_t{(fileBytes + kKilobyte - 1) / kKilobyte});
  const std::uint64_t granule = space.value("granuleBytes", kKilobyte);
  const std::uint64_t allocated = space.value("allocatedGranules", size) * granule / kKilobyte;
  const std::uint64_t free = space.value("freeGranules", std::uint64_t{0}) * granule / kKilobyte;
  return {allocated, allocated - free};
}

bool IsData(const json& note) { return note.value("class", json("document")) == "document"; }

// The last change of any document, or of any other note and stub. Zeros stand for no change.
std::string LastModified(const json& database, bool ofData) {
  std::string last = "0000-00-00T00:00:00.00Z";
  for (const char* list : {"notes", "deleted"}) {
    for (const json& note : database.value(list, json::array())) {
      if (IsData(note) != ofData) continue;
      const std::string created = note.value("created", "2019-03-01T08:00:00Z");
      last = std::max(last, DatabaseMoment(note.value("modified", created)));
    }
  }
  return last;
}

std::string Modified(const json& database, const char* key, bool ofData) {
  return database.contains(key) ? DatabaseMoment(database.at(key)) : LastModified(database, ofData);
}

}  // namespace

ShownProperties DatabaseProperties(const json& database, const std::string& fileName,
                                   std::uintmax_t fileBytes) {
  ShownProperties properties;
  properties.attributes = {{"xmlns", "DXL-NAMESPACE"},
                           {"version", "12.0"},
                           {"replicaid", ReplicaId(database)},
                           {"path", fileName},
                           {"title", database.value("title", "")}};
  const std::string categories = database.value("categories", "");
  if (!categories.empty()) properties.attributes["categories"] = categories;
  const Space space = SpaceOf(database, fileBytes);
  const auto diskSpace = static_cast<std::uint32_t>(space.kilobytes * kKilobyte);
  properties.infoAttributes = {{"dbid", DatabaseId(database)},
                               {"diskspace", std::to_string(diskSpace)}};
  properties.percentUsed =
      static_cast<double>(space.usedKilobytes) * 100.0 / static_cast<double>(space.kilobytes);
  properties.dataModified = Modified(database, "dataModified", true);
  properties.designModified = Modified(database, "designModified", false);
  return properties;
}

}  // namespace larkspan
