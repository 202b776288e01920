// Names of folders for databases: what a server and a path can hold is more than Windows takes.
#pragma once

#include <string>
#include <string_view>

#include "console/batch/BatchList.h"

namespace larkspan::console {

// One part of a path as the name of a folder: characters that Windows refuses, dots and blanks at
// its end and the names of devices are changed, and what is too long is cut. Never empty.
std::wstring SafePart(std::wstring_view part);

// "Mill_Example\archive\orders.nsf": a folder for the server, and one for each part of the path.
std::wstring FolderNameOf(const ListedDatabase& database);

// "Mill_Example\archive_orders.nsf~1a2b3c4d": where that one is taken. The digits are of the
// server, whatever the case of its letters, and the path, so that two databases have two names; no
// other name is below it or above it, but that of the server.
std::wstring FolderNameWithSum(const ListedDatabase& database);

// Whether a name or one above it is too long, or is that of an attempt ("orders.nsf.attempt-1"), so
// that no export may have it.
bool IsRefused(std::wstring_view folderName);

}  // namespace larkspan::console
