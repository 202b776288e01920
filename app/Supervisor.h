// The process that the user starts. It never opens the database: it runs export workers, one after
// another, until the export is complete or one note ID has failed three times in a row.
#pragma once

#include <string>

#include "app/WorkerLauncher.h"

namespace larkspan {

// Whether this command line with a resume note ID appended makes a worker. It does not when it ends
// inside an open quote, as in -password "x\": the suffix would belong to the last value, and the
// child would be a supervisor that starts a supervisor, without end.
bool MakesWorkers(const std::wstring& commandLine);

// Runs the export. commandLine is this process's own, exactly as it was given; each worker gets it
// with the resume note ID appended. Returns when the audit report's closing block is written.
void RunSupervisor(WorkerLauncher& launcher, const std::wstring& commandLine);

}  // namespace larkspan
