// What the library writes may fill a buffer without a NUL, so every text is ended at its limit.
#include "notes/Properties.h"

#include <algorithm>
#include <array>
#include <limits>
#include <span>

#include "notes/Text.h"

namespace larkspan {

namespace {

using notes_api::DWORD;

// The limit of a parsed field may be exceeded by its NUL.
constexpr std::size_t kFieldLimit = sizeof(InformationField) - 1;

using PathPartBuffer = std::array<char, 256>;

std::string ParseField(const char* info, notes_api::WORD field) {
  InformationField text{};
  notes_api::NSFDbInfoParse(info, field, text.data(), kFieldLimit);
  return EndedText(std::span(text).first(kFieldLimit));
}

std::uint32_t Kilobytes(std::uint64_t granules, DWORD granuleBytes) {
  constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
  return static_cast<std::uint32_t>(std::min(granules * granuleBytes / kBytesPerKilobyte, kMost));
}

}  // namespace

Status GetDatabasePath(const Database& database, std::string& path) {
  std::array<char, kNotesPathCapacity> text{};
  const Status status(notes_api::NSFDbPathGet(database.get(), text.data(), nullptr));
  path = EndedText(std::span(text).first(text.size() - 1));
  return status;
}

Status GetDatabaseLocation(const Database& database, DatabaseLocation& location) {
  location = {};
  std::string path;
  if (const Status status = GetDatabasePath(database, path); !status.ok()) return status;
  PathPartBuffer port{};
  PathPartBuffer server{};
  PathPartBuffer file{};
  const Status parsed(
      notes_api::OSPathNetParse(path.c_str(), port.data(), server.data(), file.data()));
  if (parsed.ok()) location = {EndedText(server), EndedText(file)};
  return parsed;
}

Status GetDatabaseSize(const std::string& path, std::uint64_t& bytes) {
  notes_api::QuotaInfo quota{};
  const Status status(notes_api::NSFDbQuotaGet(path.c_str(), &quota));
  bytes = std::uint64_t{quota.currentSize} * kBytesPerKilobyte;
  return status;
}

Status GetReplicaId(const Database& database, notes_api::DatabaseId& id) {
  notes_api::ReplicaInfo info{};
  const Status status(notes_api::NSFDbReplicaInfoGet(database.get(), &info));
  id = info.replicaId;
  return status;
}

Status DatabaseInformation::Get(const Database& database) {
  return Status(notes_api::NSFDbInfoGet(database.get(), buffer_.data()));
}

std::string DatabaseInformation::Title() const {
  return ParseField(buffer_.data(), notes_api::kInfoTitle);
}

std::string DatabaseInformation::Categories() const {
  return ParseField(buffer_.data(), notes_api::kInfoCategories);
}

std::string_view ParseTitle(const char* info, std::uint16_t limit, InformationField& field) {
  std::fill_n(field.begin(), limit + 1, '\0');
  notes_api::NSFDbInfoParse(info, notes_api::kInfoTitle, field.data(), limit);
  return EndedView(std::span(field).first(limit));
}

Status GetDatabaseId(const Database& database, notes_api::DatabaseId& id) {
  return Status(notes_api::NSFDbIDGet(database.get(), &id));
}

Status GetSpaceUsage(const Database& database, SpaceUsage& usage) {
  DWORD allocated = 0;
  DWORD unused = 0;
  DWORD granuleBytes = 0;
  const Status status(
      notes_api::NSFDbSpaceUsageScaled(database.get(), &allocated, &unused, &granuleBytes));
  usage = {Kilobytes(allocated, granuleBytes),
           Kilobytes(allocated - std::min(allocated, unused), granuleBytes)};
  return status;
}

Status GetModifiedTimes(const Database& database, ModifiedTimes& times) {
  return Status(notes_api::NSFDbModifiedTime(database.get(), &times.data, &times.other));
}

}  // namespace larkspan
