// Reads notes and items from the JSON of a database file. Whatever does not fit throws
// std::runtime_error (or an exception of the JSON library) with a message for the file's author.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "standin/Note.h"

namespace larkspan::standin {

// The replica ID serves to make a universal ID where the file gives none.
Note ReadNote(const nlohmann::json& from, const notes_api::TIMEDATE& replicaId);

// A stub of a deleted note: no items, and the class carries kDeletedBit.
NoteSummary ReadStub(const nlohmann::json& from, const notes_api::TIMEDATE& replicaId);

Item ReadItem(const nlohmann::json& from);

// The universal ID of a note that none was given for.
notes_api::OriginatorId DerivedOriginatorId(notes_api::NOTEID id,
                                            const notes_api::TIMEDATE& replicaId);

}  // namespace larkspan::standin
