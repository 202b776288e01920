// The end of the audit report and of the log, held against what is in the folder.
#pragma once

#include "tests/torture/kill/CleanRun.h"

namespace larkspan::torture {

// The report ends with a block whose numbers are those of the folder and the log, and behind the
// last worker the log has a line that says so when they do not agree with the list of notes.
Lines CheckClosing(const OutputTree& tree);

}  // namespace larkspan::torture
