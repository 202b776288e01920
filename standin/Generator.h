// Documents made on the fly, so that a database can have a million of them without a large file or
// much memory. The same settings always make the same documents.
#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <optional>

#include "standin/Note.h"

namespace larkspan::standin {

class Generator {
 public:
  Generator() = default;

  // Throws when the object is not the description of generated documents.
  Generator(const nlohmann::json& from, const notes_api::TIMEDATE& replicaId);

  std::size_t count() const { return documents_; }
  NoteSummary SummaryAt(std::size_t index) const;
  Note NoteAt(std::size_t index) const;

  // Where the note stands, or nothing when it is none of the generated ones.
  std::optional<std::size_t> IndexOf(notes_api::NOTEID id) const;

 private:
  notes_api::TIMEDATE replicaId_ = {};
  std::size_t documents_ = 0;
  notes_api::NOTEID firstId_ = 0;
  std::size_t textBytes_ = 0;
  std::size_t richTextBytes_ = 0;
  std::size_t pictureEvery_ = 0;
  std::size_t profileEvery_ = 0;
};

}  // namespace larkspan::standin
