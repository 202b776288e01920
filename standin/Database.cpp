#include "standin/Database.h"

#include <stdexcept>

#include "standin/JsonValues.h"
#include "standin/NoteReader.h"
#include "standin/Times.h"

namespace larkspan::standin {

namespace {

using nlohmann::json;

constexpr char kDefaultReplicaId[] = "C12583D0004D1A2B";
constexpr std::size_t kReplicaIdDigits = 16;

notes_api::TIMEDATE ReadReplicaId(const json& from) {
  const std::string digits = from.value("replicaId", kDefaultReplicaId);
  if (digits.size() != kReplicaIdDigits) throw std::runtime_error("replica IDs have 16 digits");
  notes_api::TIMEDATE replicaId = {};
  replicaId.innards[1] = HexadecimalValue(digits.substr(0, kReplicaIdDigits / 2));
  replicaId.innards[0] = HexadecimalValue(digits.substr(kReplicaIdDigits / 2));
  return replicaId;
}

bool ReadAccess(const json& from) {
  const std::string access = from.value("access", "everyone");
  if (access != "everyone" && access != "fullAccessOnly") {
    throw std::runtime_error("unknown access \"" + access + "\"");
  }
  return access == "fullAccessOnly";
}

std::optional<notes_api::QuotaInfo> ReadQuota(const json& from, std::uint64_t fileBytes) {
  const json quota = from.value("quota", json::object());
  if (quota == "unavailable") return std::nullopt;
  RequireKeys(quota, {"warningKilobytes", "limitKilobytes", "maximumKilobytes"});
  notes_api::QuotaInfo info = {};
  info.warningThreshold = quota.value("warningKilobytes", 0U);
  info.sizeLimit = quota.value("limitKilobytes", 0U);
  info.maximumSize = quota.value("maximumKilobytes", 0U);
  const auto fileKilobytes = static_cast<notes_api::DWORD>((fileBytes + 1023) / 1024);
  info.currentSize = from.value("sizeKilobytes", fileKilobytes);
  return info;
}

AclEntry ReadAclEntry(const json& from) {
  RequireKeys(from, {"name", "level", "roles"});
  return {from.at("name"), from.at("level"), from.value("roles", std::vector<std::string>())};
}

}  // namespace

Database::Database(const std::filesystem::path& file) {
  const json from = ReadJsonFile(file);
  RequireKeys(from, {"title", "replicaId", "access", "sizeKilobytes", "quota", "chunkBytes",
                     "roles", "acl", "notes", "deleted", "generate", "faults", "comment"});
  ReadProperties(from, std::filesystem::file_size(file));
  ReadNotes(from);
  faults_ = from.value("faults", json::array());
}

void Database::ReadProperties(const json& from, std::uint64_t fileBytes) {
  properties_.title = from.value("title", "");
  properties_.replicaId = ReadReplicaId(from);
  properties_.fullAccessOnly = ReadAccess(from);
  properties_.quota = ReadQuota(from, fileBytes);
  properties_.chunkBytes = from.value("chunkBytes", properties_.chunkBytes);
  if (properties_.chunkBytes == 0) throw std::runtime_error("chunks need at least one byte");
  properties_.roles = from.value("roles", std::vector<std::string>());
  for (const json& entry : from.value("acl", json::array())) {
    properties_.acl.push_back(ReadAclEntry(entry));
  }
}

void Database::ReadNotes(const json& from) {
  if (from.contains("generate")) {
    generator_ = Generator(from.at("generate"), properties_.replicaId);
  }
  for (const json& note : from.value("notes", json::array())) {
    AddNote(ReadNote(note, properties_.replicaId));
  }
  for (const json& stub : from.value("deleted", json::array())) {
    stubs_.push_back(ReadStub(stub, properties_.replicaId));
  }
}

void Database::AddNote(Note note) {
  const bool isNew = noteIndexes_.emplace(note.id, notes_.size()).second;
  if (!isNew || generator_.IndexOf(note.id)) throw std::runtime_error("a note ID stands twice");
  notes_.push_back(std::move(note));
}

std::size_t Database::entryCount() const {
  return notes_.size() + stubs_.size() + generator_.count();
}

NoteSummary Database::EntryAt(std::size_t index) const {
  if (index < notes_.size()) return SummaryOf(notes_[index]);
  index -= notes_.size();
  if (index < stubs_.size()) return stubs_[index];
  return generator_.SummaryAt(index - stubs_.size());
}

TimePair Database::LastModified() const {
  TimePair last;
  for (std::size_t i = 0; i < entryCount(); ++i) {
    const NoteSummary entry = EntryAt(i);
    const bool isData = (entry.noteClass & ~kDeletedBit) == kClassDocument;
    notes_api::TIMEDATE& time = isData ? last.data : last.other;
    if (Instant(entry.modified) > Instant(time)) time = entry.modified;
  }
  return last;
}

std::optional<Note> Database::CopyNote(notes_api::NOTEID id) const {
  const auto found = noteIndexes_.find(id);
  if (found != noteIndexes_.end()) return notes_[found->second];
  const auto generated = generator_.IndexOf(id);
  return generated ? std::optional(generator_.NoteAt(*generated)) : std::nullopt;
}

}  // namespace larkspan::standin
