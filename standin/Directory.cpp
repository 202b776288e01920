#include "standin/Directory.h"

#include <cstdint>
#include <utility>

#include "standin/EntryBytes.h"
#include "standin/ItemValues.h"
#include "standin/Times.h"

namespace larkspan::standin {

namespace {

constexpr char kPathItem[] = "$Path";

SummaryItem TextItem(const char* name, const std::string& text) {
  return {name, MakeTextValue(notes_api::kTypeText, text)};
}

// Each made on a day of its own and changed a minute later.
ListedDatabase GeneratedDatabase(std::size_t ordinal) {
  constexpr std::size_t kDaysUsed = 20 * 365;
  constexpr std::size_t kFirstNumber = 10000;
  constexpr std::size_t kSizes = 1000;
  constexpr double kSizeStep = 262144;
  constexpr std::int64_t kMinute = 60 * 100;
  constexpr notes_api::DWORD kReplicaIdEnd = 0xC1250000;
  const std::int64_t day = static_cast<std::int64_t>(ordinal % kDaysUsed) * kHundredthsPerDay;
  ListedDatabase database;
  database.path = "lots\\lot" + std::to_string(kFirstNumber + ordinal) + ".nsf";
  database.info = "Seed lot " + std::to_string(ordinal) + '\0';
  database.bytes = static_cast<double>(ordinal % kSizes + 1) * kSizeStep;
  database.replicaId = {{static_cast<notes_api::DWORD>(ordinal), kReplicaIdEnd}};
  database.dataModified = MakeTimeDate({2000, 1, 1}, day + kMinute);
  database.designModified = MakeTimeDate({2000, 1, 1}, day);
  return database;
}

}  // namespace

DirectoryEntry MakeDatabaseEntry(const ListedDatabase& database) {
  std::vector<SummaryItem> items = {TextItem(kPathItem, database.path)};
  if (database.info) items.push_back(TextItem("$Info", *database.info));
  if (database.dataModified) {
    items.push_back({"$DATAMOD", MakeTimeValue(*database.dataModified)});
  }
  if (database.designModified) {
    items.push_back({"$NONDATAMOD", MakeTimeValue(*database.designModified)});
  }
  if (database.bytes) items.push_back({"$Length", MakeNumberValue(*database.bytes)});
  return {database.replicaId, false, MakeSummary(items)};
}

DirectoryEntry MakeFolderEntry(const std::string& path) {
  return {{}, true, MakeSummary({TextItem(kPathItem, path)})};
}

Directory::Directory(std::optional<std::string> path, std::vector<DirectoryEntry> entries,
                     std::size_t generated)
    : path_(std::move(path)), entries_(std::move(entries)), generated_(generated) {}

DirectoryEntry Directory::EntryAt(std::size_t index) const {
  if (index < entries_.size()) return entries_[index];
  return MakeDatabaseEntry(GeneratedDatabase(index - entries_.size()));
}

}  // namespace larkspan::standin
