// What the audit report says about the database.
#pragma once

#include <string>

#include "notes/Handles.h"

namespace larkspan {

// Appends where the database lies and with what access it was opened.
void AuditDatabase(const Database& database);

// Append the size of the database with this path (in the Notes character set). A size that the
// library does not tell is "unavailable" in the report and a WARNING in the run log.
void AuditSizeBefore(const std::string& databasePath);
void AuditSizeAfter(const std::string& databasePath);

}  // namespace larkspan
