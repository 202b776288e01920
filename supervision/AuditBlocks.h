// What the supervisor writes into the audit report: its first line and its closing block.
#pragma once

#include <ctime>

#include "report/RunLog.h"

namespace larkspan {

// Appends the line that tells when the run began.
void WriteAuditBegin(std::time_t startTime, const RunLog& log);

// Appends the closing block: end and duration of the run, the documents listed, the files exported
// per folder, and the failures and warnings that the run log holds. Warns in the run log when
// these do not add up to the documents listed.
void WriteAuditEnd(std::time_t startTime, const RunLog& log);

}  // namespace larkspan
