// Recovery from crashes, step by step:
//   1. A worker is started at the current note ID; the first one at 0.
//   2. However it ends, its marker file tells where it was, and is deleted.
//   3. No marker: the worker finished, was stopped or failed outside a note, and the run ends. One
//      that did not come to its own end has its line.
//   4. Another note ID: the worker died on that note. The next worker starts there at once and
//      goes on after it; the note is lost and the run log says so.
//   5. The worker's own note ID: it could not even start. The same is tried again after five
//      seconds, but three such endings in a row end the run.
#include "app/Supervisor.h"

#include <chrono>
#include <cstdint>
#include <ctime>

#include "app/Arguments.h"
#include "app/CommandLine.h"
#include "app/MarkerFile.h"
#include "app/Settings.h"
#include "base/LocalTime.h"
#include "base/Pause.h"
#include "base/WideFormat.h"
#include "report/AuditReport.h"
#include "report/RunLog.h"

namespace larkspan {

namespace {

constexpr std::uint32_t kMaxRetries = 3;
constexpr std::chrono::milliseconds kRetryPause{5000};

std::wstring WorkerCommandLine(const std::wstring& commandLine, std::uint32_t noteId) {
  return FormatWide(L"%s -l %08X", commandLine.c_str(), noteId);
}

void LogEnding(const WorkerEnding& ending) {
  switch (ending.kind) {
    case WorkerEnding::Kind::kNotCreated:
      LogError(L"CreateProcess failed (%d)", static_cast<int>(ending.code));
      break;
    case WorkerEnding::Kind::kExited:
      if (ending.code == 0) {
        LogDebug(L"Child process exited cleanly");
      } else {
        LogDebug(L"Child process returned non-zero value (%u)", ending.code);
      }
      break;
    case WorkerEnding::Kind::kExitCodeUnknown:
      break;
  }
}

// A worker that dies before its first note, or between two, leaves nothing to resume at. Its end
// must not look like that of a complete export.
void LogEndOutsideANote(const WorkerEnding& ending) {
  if (ending.atItsOwnEnd) return;
  if (ending.kind == WorkerEnding::Kind::kExited) {
    LogError(L"Child process returned %u outside a note; the export may be incomplete",
             ending.code);
  } else if (ending.kind == WorkerEnding::Kind::kExitCodeUnknown) {
    LogError(L"Child process ended outside a note; the export may be incomplete");
  }
}

// Runs one worker and returns the note ID that it left in the marker file.
std::uint32_t RunOneWorker(WorkerLauncher& launcher, const std::wstring& commandLine,
                           std::uint32_t noteId) {
  LogDebug(L"Top of Archive Main Loop with nid %08X", noteId);
  if (noteId != 0) LogWarning(L"Major: Incomplete run detected for note id %08X", noteId);
  LogDebug(L"Invoking child process");
  const WorkerEnding ending = launcher.RunToEnd(WorkerCommandLine(commandLine, noteId));
  LogEnding(ending);
  LogDebug(L"Child process complete");
  LogDebug(L"Checking for marker file");
  const std::uint32_t markedNoteId = ReadMarkerFile();
  DeleteMarkerFile();
  if (markedNoteId == kNoNoteId) LogEndOutsideANote(ending);
  return markedNoteId;
}

void RunWorkers(WorkerLauncher& launcher, const std::wstring& commandLine) {
  std::uint32_t noteId = 0;
  std::uint32_t retries = 0;
  while (noteId != kNoNoteId) {
    const std::uint32_t markedNoteId = RunOneWorker(launcher, commandLine, noteId);
    if (markedNoteId != noteId) {
      noteId = markedNoteId;
      retries = 0;
    } else if (++retries == kMaxRetries) {
      LogError(L"Maximum retries exceeded");
      return;
    } else {
      Pause(kRetryPause);
    }
  }
}

}  // namespace

bool MakesWorkers(const std::wstring& commandLine) {
  const ParsedCommandLine worker =
      ParseCommandLine(SplitCommandLine(WorkerCommandLine(commandLine, 0)));
  return worker.accepted && worker.settings.resumeNoteId == 0;
}

void RunSupervisor(WorkerLauncher& launcher, const std::wstring& commandLine) {
  const std::time_t startTime = std::time(nullptr);
  Audit(L"Archive started at: %s\n", FormatLocalTime(startTime).c_str());
  // One that an earlier run left behind would be taken for the first worker's.
  DeleteMarkerFile();
  RunWorkers(launcher, commandLine);
  LogDebug(L"End of Archive Main Loop");
  WriteAuditEnd(startTime);
}

}  // namespace larkspan
