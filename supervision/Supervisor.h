// What the process that the user starts does: it runs export workers, one after another, until the
// export is complete or one note ID has failed three times in a row. It never opens the database.
// It works on the folder that it is given, whatever the settings of this process are, so that one
// process can supervise several exports, each on a thread of its own.
#pragma once

#include <cstdint>
#include <string>

#include "report/RunLog.h"
#include "supervision/WorkerLauncher.h"

namespace larkspan {

// The command line of a worker that goes on after this note ID: the supervisor's own with the note
// ID appended.
std::wstring WorkerCommandLine(const std::wstring& commandLine, std::uint32_t noteId);

// Runs the export into the log's output folder. commandLine is the supervisor's own, exactly as it
// was given. Returns when the audit report's closing block is written.
void RunSupervisor(WorkerLauncher& launcher, const std::wstring& commandLine, const RunLog& log);

}  // namespace larkspan
