// The closing block of the audit report, counted again from the files of the folder.
#pragma once

#include "tests/torture/kill/CleanRun.h"

namespace larkspan::torture {

inline constexpr char kMismatch[] = "#WARNING# - Document count mismatch: ";

// The report ends with a block whose numbers are those of the folder and the log, and the log ends
// with a line that says so when they do not agree with the list of notes.
Lines CheckClosing(const OutputTree& tree);

}  // namespace larkspan::torture
