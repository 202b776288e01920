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

// Writes the line of a note at which a worker has died.
void LogLostNote(std::uint32_t noteId, const RunLog& log);

// Where a run begins.
struct FirstWorker {
  std::uint32_t noteId = 0;  // It goes on after this note; 0 begins the export.
  bool noteIsLost = false;   // Workers have died at that note before, so the log gets its line.
};

// Runs workers into the log's output folder, one after another, without the blocks of the audit
// report: for an export that is more than the workers of this call. commandLine is that of all of
// them, without a note ID. Otherwise as RunSupervisor.
void RunWorkers(WorkerLauncher& launcher, const std::wstring& commandLine, const RunLog& log,
                FirstWorker first);

// Runs the export into the log's output folder. commandLine is the supervisor's own, exactly as it
// was given. Returns when the audit report's closing block is written. What the launcher throws
// ends the run where it stands: marker file and reports stay as they are.
void RunSupervisor(WorkerLauncher& launcher, const std::wstring& commandLine, const RunLog& log,
                   FirstWorker first = {});

}  // namespace larkspan
