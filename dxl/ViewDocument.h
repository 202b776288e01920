// The content of one view or folder as an XML file.
#pragma once

#include <cstdint>
#include <string>

#include "notes/Handles.h"
#include "notes/NotesApi.h"

namespace larkspan {

// Writes every entry of the view's index, in index order, to the file. A view that is not exported
// or whose index cannot be read leaves no file and no log line; a file that cannot be written is
// logged. An index that had to be built for this is dropped again, unless it is a folder's.
// Numbers are written by the conventions given.
void WriteViewDocument(const Database& database, std::uint32_t viewId,
                       const notes_api::IntlSettings& numbers, const std::wstring& path);

}  // namespace larkspan
