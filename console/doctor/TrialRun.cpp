#include "console/doctor/TrialRun.h"

#include <array>
#include <chrono>
#include <ctime>

#include "console/folder/RunLogFile.h"
#include "console/follow/ExporterArguments.h"
#include "console/follow/ExporterProcess.h"
#include "console/follow/Host.h"
#include "console/follow/LineSource.h"
#include "console/follow/SupervisedWorkers.h"

namespace larkspan::console {

namespace {

constexpr DWORD kRoundMilliseconds = 100;
constexpr std::chrono::milliseconds kLastLines{10'000};

struct Watch {
  std::function<void(const ProgressLine&)> onLine;
  std::function<void()> onSilence;  // Called again when nothing has come of it.
};

void TakeLines(LineSource& lines, const Watch& watch, std::uint64_t& lastSign) {
  for (const std::string& line : lines.Take()) {
    const std::optional<ProgressLine> progress = ParseProgressLine(line);
    if (!progress) continue;
    lastSign = Now();
    watch.onLine(*progress);
  }
}

// Returns when nothing of it is at work any more.
void Follow(Exporter& exporter, const TrialSurroundings& around, const Watch& watch) {
  LineSource lines(exporter.TakeOutput());
  const std::array handles = {exporter.ended(), lines.event(), around.stops.event()};
  std::uint64_t lastSign = Now();
  while (WaitForMultipleObjects(static_cast<DWORD>(handles.size()), handles.data(), FALSE,
                                kRoundMilliseconds) != WAIT_OBJECT_0) {
    TakeLines(lines, watch, lastSign);
    if (around.stops.Count() > 0) exporter.EndAll();
    if (Now() - lastSign < around.request.timeoutMilliseconds) continue;
    watch.onSilence();
    lastSign = Now();
  }
  exporter.EndAll();
  lines.AwaitEnd(kLastLines);
  TakeLines(lines, watch, lastSign);
}

TrialEnd::Kind KindOf(bool wasStopped, bool hung, bool atItsOwnEnd) {
  if (wasStopped) return TrialEnd::Kind::kStopped;
  if (hung) return TrialEnd::Kind::kHung;
  return atItsOwnEnd ? TrialEnd::Kind::kOwnEnd : TrialEnd::Kind::kDied;
}

}  // namespace

TrialEnd RunFirstWorker(const TrialSurroundings& around, const ExportRequest& run,
                        const std::wstring& folder) {
  std::vector<std::wstring> arguments = ExporterArguments(run, folder, false);
  arguments.insert(arguments.end(), {L"-l", L"00000000"});
  const EndSignal signal(folder, 0);
  ExporterProcess worker(around.program, std::move(arguments), true, around.password);
  if (!worker.Started()) return {TrialEnd::Kind::kNotStarted, worker.systemError()};
  TrialEnd end;
  bool hung = false;
  const auto takeLine = [&](const ProgressLine& line) {
    if (line.kind != ProgressLine::Kind::kProperties) return;
    end.isOpen = true;
    // At the line before the search, since the first note may be begun before a stop comes through.
    worker.AskToStop();
  };
  Follow(worker, around, {takeLine, [&] {
                            hung = true;
                            worker.EndAll();
                          }});
  end.code = worker.ExitCode();
  end.kind = KindOf(around.stops.Count() > 0, hung, signal.IsGiven());
  return end;
}

NotesTrialEnd RunListedNotes(const TrialSurroundings& around, const std::wstring& folder,
                             std::uint32_t firstNote) {
  NotesTrialEnd end;
  std::uint32_t note = 0;
  SupervisedWorkers workers(around.program, ExporterArguments(around.request.run, folder, false),
                            true, around.password, RunLog(folder, LogLevel::kWarning),
                            {firstNote - 1});
  const auto takeLine = [&note](const ProgressLine& line) {
    if (line.kind == ProgressLine::Kind::kDocument) note = line.number;
  };
  Follow(workers, around, {takeLine, [&] {
                             if (workers.EndWorker() && note != 0) end.hung.push_back(note);
                           }});
  end.wasStopped = around.stops.Count() > 0;
  return end;
}

std::string LastErrorIn(const std::wstring& folder) { return ReadRunLogFile(folder).lastError; }

std::vector<std::string> WarningsIn(const std::wstring& folder) {
  const RunLogFacts log = ReadRunLogFile(folder);
  std::vector<std::string> texts;
  for (const RepeatedText& warning : log.warnings) texts.push_back(warning.text);
  if (log.aclCause) texts.push_back("Error exporting ACL (" + *log.aclCause + ")");
  return texts;
}

}  // namespace larkspan::console
