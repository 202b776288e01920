// The processes of a running export are ended at a moment.
#pragma once

#include <string>

#include "tests/torture/kill/Moment.h"
#include "tests/torture/kill/RunningExport.h"

namespace larkspan::torture {

// Waits for the moment in the output folder, and ends its victims. False when the export had ended
// by itself before.
bool StrikeAt(const Moment& moment, const std::wstring& output, RunningExport& running);

// Ends the worker after the one that was ended, where the moment wants it. False when none was.
bool StrikeTheNextWorker(const Moment& moment, RunningExport& running);

}  // namespace larkspan::torture
