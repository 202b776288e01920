// The audit report: audit.txt in the output folder, the summary of one export run for people. The
// supervisor and the first worker write it, one after another, each text one open, write and
// close. A file that cannot be opened drops the text silently.
#pragma once

#include <ctime>

namespace larkspan {

// Appends one formatted text; "%s" stands for wide text. A text of more than 1023 characters, or
// 1023 bytes in UTF-8, is cut.
void Audit(const wchar_t* format, ...);

// Appends the closing block: end and duration of the run, the documents listed, the files exported
// per folder, and the failures and warnings that the run log holds. Warns in the run log when
// these do not add up to the documents listed.
void WriteAuditEnd(std::time_t startTime);

}  // namespace larkspan
