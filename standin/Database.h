// One database file in memory. All opens of a file in one runtime share the object; notes are
// copied out of it, so that what a caller does to an open note changes nothing here.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <vector>

#include "standin/DatabaseProperties.h"
#include "standin/Generator.h"
#include "standin/Note.h"

namespace larkspan::standin {

// The last changes to documents and to everything else, or what the file says instead.
struct TimePair {
  notes_api::TIMEDATE data = {};
  notes_api::TIMEDATE other = {};
};

class Database {
 public:
  // Throws an exception derived from std::exception when the file is no database.
  explicit Database(const std::filesystem::path& file);

  const DatabaseProperties& properties() const { return properties_; }

  // The fault plan that stands in the file; an empty array when there is none.
  const nlohmann::json& faults() const { return faults_; }

  // Notes and stubs of deleted notes.
  std::size_t entryCount() const;
  NoteSummary EntryAt(std::size_t index) const;

  // Nothing when no such note exists; a stub is no note.
  std::optional<Note> CopyNote(notes_api::NOTEID id) const;

  // A part without any note gets an all-zero time.
  TimePair LastModified() const;

  // Whether a view has its index: from the start when the file says so. Opening a view builds it;
  // purging drops it.
  bool HasIndex(notes_api::NOTEID view) const { return indexes_.contains(view); }
  void BuildIndex(notes_api::NOTEID view) { indexes_.insert(view); }
  void DropIndex(notes_api::NOTEID view) { indexes_.erase(view); }

 private:
  void ReadNotes(const nlohmann::json& from);
  void AddNote(Note note);

  DatabaseProperties properties_;
  nlohmann::json faults_ = nlohmann::json::array();
  std::vector<Note> notes_;
  std::map<notes_api::NOTEID, std::size_t> noteIndexes_;
  std::vector<NoteSummary> stubs_;
  Generator generator_;
  std::set<notes_api::NOTEID> indexes_;
};

}  // namespace larkspan::standin
