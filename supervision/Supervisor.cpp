// Recovery from crashes, step by step:
//   1. A worker is started at the current note ID; the first one at 0.
//   2. However it ends, its marker file tells where it was, and is deleted.
//   3. No marker: the worker finished, was stopped or failed outside a note, and the run ends. One
//      that did not come to its own end has its line.
//   4. Another note ID: the worker died on that note. The next worker starts there at once and
//      goes on after it; the note is lost and the run log says so.
//   5. The worker's own note ID: it could not even start. The same is tried again after five
//      seconds, but three such endings in a row end the run.
#include "supervision/Supervisor.h"

#include <chrono>
#include <ctime>

#include "base/FileSystem.h"
#include "base/NoteId.h"
#include "base/OutputPaths.h"
#include "base/Pause.h"
#include "base/WideFormat.h"
#include "report/MarkerFile.h"
#include "supervision/AuditBlocks.h"

namespace larkspan {

namespace {

constexpr std::uint32_t kMaxRetries = 3;
constexpr std::chrono::milliseconds kRetryPause{5000};

void LogEnding(const WorkerEnding& ending, const RunLog& log) {
  switch (ending.kind) {
    case WorkerEnding::Kind::kNotCreated:
      log.Error(L"CreateProcess failed (%d)", static_cast<int>(ending.code));
      break;
    case WorkerEnding::Kind::kExited:
      if (ending.code == 0) {
        log.Debug(L"Child process exited cleanly");
      } else {
        log.Debug(L"Child process returned non-zero value (%u)", ending.code);
      }
      break;
    case WorkerEnding::Kind::kExitCodeUnknown:
      break;
  }
}

// A worker that dies before its first note, or between two, leaves nothing to resume at. Its end
// must not look like that of a complete export.
void LogEndOutsideANote(const WorkerEnding& ending, const RunLog& log) {
  if (ending.atItsOwnEnd) return;
  if (ending.kind == WorkerEnding::Kind::kExited) {
    log.Error(L"Child process returned %u outside a note; the export may be incomplete",
              ending.code);
  } else if (ending.kind == WorkerEnding::Kind::kExitCodeUnknown) {
    log.Error(L"Child process ended outside a note; the export may be incomplete");
  }
}

// Runs one worker and returns the note ID that it left in the marker file.
std::uint32_t RunOneWorker(WorkerLauncher& launcher, const std::wstring& commandLine,
                           std::uint32_t noteId, bool noteIsLost, const RunLog& log) {
  log.Debug(L"Top of Archive Main Loop with nid %08X", noteId);
  if (noteIsLost) LogLostNote(noteId, log);
  log.Debug(L"Invoking child process");
  const EndSignal signal(log.outputFolder(), noteId);
  const WorkerEnding ending = launcher.RunToEnd(WorkerCommandLine(commandLine, noteId), signal);
  LogEnding(ending, log);
  log.Debug(L"Child process complete");
  log.Debug(L"Checking for marker file");
  const std::uint32_t markedNoteId = ReadMarkerFile(log);
  DeleteLastMarkerFile(log);
  if (markedNoteId == kNoNoteId) LogEndOutsideANote(ending, log);
  return markedNoteId;
}

void RunUntilNoMarker(WorkerLauncher& launcher, const std::wstring& commandLine, const RunLog& log,
                      FirstWorker first) {
  auto [noteId, noteIsLost] = first;
  std::uint32_t retries = 0;
  while (noteId != kNoNoteId) {
    const std::uint32_t markedNoteId = RunOneWorker(launcher, commandLine, noteId, noteIsLost, log);
    if (markedNoteId != noteId) {
      noteId = markedNoteId;
      noteIsLost = noteId != 0;
      retries = 0;
    } else if (++retries == kMaxRetries) {
      log.Error(L"Maximum retries exceeded");
      return;
    } else {
      Pause(kRetryPause);
    }
  }
}

}  // namespace

std::wstring WorkerCommandLine(const std::wstring& commandLine, std::uint32_t noteId) {
  return FormatWide(L"%s -l %08X", commandLine.c_str(), noteId);
}

void LogLostNote(std::uint32_t noteId, const RunLog& log) {
  log.Warning(L"Major: Incomplete run detected for note id %08X", noteId);
}

void RunWorkers(WorkerLauncher& launcher, const std::wstring& commandLine, const RunLog& log,
                FirstWorker first) {
  // One that an earlier run left behind would be taken for the first worker's.
  DeleteLastMarkerFile(log);
  RunUntilNoMarker(launcher, commandLine, log, first);
  log.Debug(L"End of Archive Main Loop");
  // What a worker that died on a note left of it is deleted by the next export. There may be none.
  file_system::Delete(output::Join(log.outputFolder(), output::kTemporary));
}

void RunSupervisor(WorkerLauncher& launcher, const std::wstring& commandLine, const RunLog& log,
                   FirstWorker first) {
  const std::time_t startTime = std::time(nullptr);
  WriteAuditBegin(startTime, log);
  RunWorkers(launcher, commandLine, log, first);
  WriteAuditEnd(startTime, log);
}

}  // namespace larkspan
