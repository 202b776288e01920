#include "standin/Database.h"

#include <stdexcept>

#include "standin/JsonValues.h"
#include "standin/NoteReader.h"
#include "standin/Times.h"

namespace larkspan::standin {

namespace {

using nlohmann::json;

}  // namespace

Database::Database(const std::filesystem::path& file) {
  const json from = ReadJsonFile(file);
  RequireKeys(
      from, {"title", "categories", "replicaId", "replica", "databaseId", "access", "sizeKilobytes",
             "space", "quota", "dataModified", "designModified", "chunkBytes", "roles", "acl",
             "notes", "deleted", "generate", "faults", "comment"});
  properties_ = ReadDatabaseProperties(from, std::filesystem::file_size(file));
  ReadNotes(from);
  faults_ = from.value("faults", json::array());
}

void Database::ReadNotes(const json& from) {
  const notes_api::DatabaseId& replicaId = properties_.replicaInfo.replicaId;
  if (from.contains("generate")) generator_ = Generator(from.at("generate"), replicaId);
  for (const json& note : from.value("notes", json::array())) AddNote(ReadNote(note, replicaId));
  for (const json& stub : from.value("deleted", json::array())) {
    stubs_.push_back(ReadStub(stub, replicaId));
  }
}

void Database::AddNote(Note note) {
  const bool isNew = noteIndexes_.emplace(note.id, notes_.size()).second;
  if (!isNew || generator_.IndexOf(note.id)) throw std::runtime_error("a note ID stands twice");
  if (note.view != nullptr && note.view->isIndexed()) BuildIndex(note.id);
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
  return {properties_.dataModified.value_or(last.data),
          properties_.designModified.value_or(last.other)};
}

std::optional<Note> Database::CopyNote(notes_api::NOTEID id) const {
  const auto found = noteIndexes_.find(id);
  if (found != noteIndexes_.end()) return notes_[found->second];
  const auto generated = generator_.IndexOf(id);
  return generated ? std::optional(generator_.NoteAt(*generated)) : std::nullopt;
}

}  // namespace larkspan::standin
