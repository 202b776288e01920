// Accounts for each listed note of an output folder, from what the disk holds: idtable.txt,
// unidindex.txt, log.txt, audit.txt, outcome.json and every file. Nothing is written. No worker
// may be at work there.
#pragma once

#include <optional>
#include <string>

#include "console/account/Account.h"
#include "console/folder/FileProgress.h"

namespace larkspan::console {

// Whether the folder holds one of the records by which that of an export is known.
bool IsOfAnExport(const std::wstring& folder);

// No value when it was broken off, or when the folder cannot be listed, or is none of an export:
// `whyNot` is then a sentence.
std::optional<Account> VerifyFolder(const std::wstring& folder, const FileProgress& progress,
                                    std::string& whyNot);

}  // namespace larkspan::console
