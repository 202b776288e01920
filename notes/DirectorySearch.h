// The databases and folders of a data directory, which opens by its path like a database.
#pragma once

#include <functional>

#include "notes/Handles.h"
#include "notes/NotesApi.h"

namespace larkspan {

// The match and the summary stay only as long as the visitor runs.
using DirectoryVisitor =
    std::function<void(const notes_api::SearchMatch& match, const notes_api::ItemTable& summary)>;

// Hands over each database and folder of an open directory, in the library's order. How the search
// itself ends does not matter: what it found was handed over. After an exception of the visitor no
// further match is handed over, and it comes out of here when the search has ended.
void SearchDirectory(const Database& directory, const DirectoryVisitor& visit);

}  // namespace larkspan
