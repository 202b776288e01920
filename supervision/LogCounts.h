// What the run log says about documents, for the audit report.
#pragma once

#include <string>

namespace larkspan {

struct LoggedCounts {
  int failed = 0;    // "Major:" lines.
  int warnings = 0;  // "Minor:" lines.
};

// Counts over the whole of log.txt in this folder, also over lines of earlier runs; nothing
// when it cannot be opened. Of a line longer than 1022 bytes each piece of that length is taken for
// a line of its own.
LoggedCounts CountLoggedDocuments(const std::wstring& outputFolder);

}  // namespace larkspan
