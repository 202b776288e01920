// Opening a database. What an open one tells of itself stands in notes/Properties.h. Paths are in
// the Notes character set.
#pragma once

#include <string>
#include <string_view>

#include "notes/Handles.h"
#include "notes/Status.h"

namespace larkspan {

// Translates a path to open, as notes/Text.h translates text. An empty path names the data
// directory of this machine, and a cut one another file, so a path that is not translated in full
// is kPathNotTranslated.
Status PathToNotes(std::wstring_view path, std::string& notes);

// Opens a database by its path ("server!!file" or "file") as the current user.
Status OpenDatabase(const std::string& path, Database& database);

// Opens it with the full access of an administrator, for which the library wants a list of names
// that holds the current user's.
Status OpenDatabaseFullAccess(const std::string& path, Database& database);

}  // namespace larkspan
