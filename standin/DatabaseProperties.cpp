#include "standin/DatabaseProperties.h"

#include <nlohmann/json.hpp>
#include <stdexcept>

#include "standin/JsonValues.h"
#include "standin/Times.h"

namespace larkspan::standin {

namespace {

using nlohmann::json;

constexpr char kDefaultReplicaId[] = "C12583D0004D1A2B";
constexpr std::size_t kIdDigits = 16;

notes_api::TIMEDATE ReadId(const json& digits) {
  const auto text = digits.get<std::string>();
  if (text.size() != kIdDigits) throw std::runtime_error("IDs of databases have 16 digits");
  notes_api::TIMEDATE id = {};
  id.innards[1] = HexadecimalValue(text.substr(0, kIdDigits / 2));
  id.innards[0] = HexadecimalValue(text.substr(kIdDigits / 2));
  return id;
}

std::optional<notes_api::TIMEDATE> ReadOptionalTime(const json& from, const char* key) {
  if (!from.contains(key)) return std::nullopt;
  return ParseTimeDate(from.at(key).get<std::string>());
}

notes_api::ReplicaInfo ReadReplicaInfo(const json& from) {
  const json replica = from.value("replica", json::object());
  RequireKeys(replica, {"flags", "cutoffInterval", "cutoff"});
  notes_api::ReplicaInfo info = {};
  info.replicaId = ReadId(from.value("replicaId", json(kDefaultReplicaId)));
  info.flags = replica.value("flags", notes_api::WORD{0});
  info.cutoffInterval = replica.value("cutoffInterval", notes_api::WORD{90});
  info.cutoff = ReadOptionalTime(replica, "cutoff").value_or(notes_api::TIMEDATE{});
  return info;
}

// Two databases with one replica ID are replicas of each other, and have different database IDs.
// One that none was given for is at least not the replica ID.
notes_api::DatabaseId ReadDatabaseId(const json& from, const notes_api::DatabaseId& replicaId) {
  if (from.contains("databaseId")) return ReadId(from.at("databaseId"));
  return {{~replicaId.innards[0], replicaId.innards[1]}};
}

bool ReadAccess(const json& from) {
  const std::string access = from.value("access", "everyone");
  if (access != "everyone" && access != "fullAccessOnly") {
    throw std::runtime_error("unknown access \"" + access + "\"");
  }
  return access == "fullAccessOnly";
}

SpaceUsage ReadSpace(const json& from, notes_api::DWORD kilobytes) {
  const json space = from.value("space", json::object());
  RequireKeys(space, {"allocatedGranules", "freeGranules", "granuleBytes"});
  return {space.value("allocatedGranules", kilobytes), space.value("freeGranules", 0U),
          space.value("granuleBytes", kKilobyte)};
}

std::optional<notes_api::QuotaInfo> ReadQuota(const json& from, notes_api::DWORD kilobytes) {
  const json quota = from.value("quota", json::object());
  if (quota == "unavailable") return std::nullopt;
  RequireKeys(quota, {"warningKilobytes", "limitKilobytes", "maximumKilobytes"});
  notes_api::QuotaInfo info = {};
  info.warningThreshold = quota.value("warningKilobytes", 0U);
  info.sizeLimit = quota.value("limitKilobytes", 0U);
  info.maximumSize = quota.value("maximumKilobytes", 0U);
  info.currentSize = kilobytes;
  return info;
}

AclEntry ReadAclEntry(const json& from) {
  RequireKeys(from, {"name", "level", "roles"});
  return {from.at("name"), from.at("level"), from.value("roles", std::vector<std::string>())};
}

}  // namespace

DatabaseProperties ReadDatabaseProperties(const json& from, std::uint64_t fileBytes) {
  const auto fileKilobytes = static_cast<notes_api::DWORD>((fileBytes + kKilobyte - 1) / kKilobyte);
  const notes_api::DWORD kilobytes = from.value("sizeKilobytes", fileKilobytes);
  DatabaseProperties properties;
  properties.title = from.value("title", "");
  properties.categories = from.value("categories", "");
  properties.replicaInfo = ReadReplicaInfo(from);
  properties.databaseId = ReadDatabaseId(from, properties.replicaInfo.replicaId);
  properties.fullAccessOnly = ReadAccess(from);
  properties.space = ReadSpace(from, kilobytes);
  properties.quota = ReadQuota(from, kilobytes);
  properties.chunkBytes = from.value("chunkBytes", properties.chunkBytes);
  if (properties.chunkBytes == 0) throw std::runtime_error("chunks need at least one byte");
  properties.roles = from.value("roles", std::vector<std::string>());
  for (const json& entry : from.value("acl", json::array())) {
    properties.acl.push_back(ReadAclEntry(entry));
  }
  properties.dataModified = ReadOptionalTime(from, "dataModified");
  properties.designModified = ReadOptionalTime(from, "designModified");
  return properties;
}

}  // namespace larkspan::standin
