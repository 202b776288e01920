// Step by step:
//   1. The list is read, the root made and locked, and each database has its folder chosen.
//   2. What an earlier run has finished is passed over.
//   3. Exports are begun as long as there are places, and followed. Each is this program again, in
//      a job, so that a fault in one takes no other along.
//   4. Whenever one begins or ends the summary is written anew.
#include "console/batch/Batch.h"

#include <windows.h>

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

#include "base/Pause.h"
#include "base/Retry.h"
#include "console/batch/EarlierExport.h"
#include "console/batch/EventReader.h"
#include "console/batch/ExportConsole.h"
#include "console/batch/PlanEntries.h"
#include "console/batch/Root.h"
#include "console/batch/Summary.h"
#include "console/follow/Host.h"
#include "console/follow/OutputFolder.h"
#include "console/follow/Watches.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr std::chrono::milliseconds kPause{50};
// Between two renewals of the summary, which takes longer the more databases it has.
constexpr std::uint64_t kRenewalMilliseconds = 500;
constexpr std::uint64_t kRenewalShare = 10;  // Times as long as one takes.
constexpr int kLastTries = 5;
constexpr std::chrono::milliseconds kLastPause{500};

struct RunningExport {
  RunningExport(const std::vector<std::wstring>& arguments, const std::wstring& password,
                const ListedDatabase& database)
      : console(arguments, password), reader(database.server, database.path) {}

  ExportConsole console;
  EventReader reader;
};

class Batch {
 public:
  Batch(const BatchRequest& request, const BatchSurroundings& surroundings)
      : request_(request), around_(surroundings), root_(WholePath(request.root)), begun_(Now()) {}

  ExitCode Run() {
    BatchList list;
    if (const std::string fault = ReadBatchList(Utf8ToWide(request_.listFile), list);
        !fault.empty()) {
      return Refuse("the list '" + request_.listFile + "': " + fault);
    }
    if (const std::string fault = MakeRoot(root_); !fault.empty())
      return Refuse("'" + request_.root + "' " + fault);
    const RootLock lock(root_);
    if (!lock.IsHeld())
      return Refuse("another batch is at work in '" + request_.root + "', or it refuses files");
    entries_ = PlanEntries(root_, list.databases, request_.wanted);
    around_.display.Start(
        {request_.listFile, WideToUtf8(root_), list.repeated, request_.limits.jobs},
        CountEntries(entries_));
    for (const BatchEntry& entry : entries_)
      if (entry.state == BatchState::kDone) around_.display.Finish(entry);
    isSummaryStale_ = !KeepSummary();
    if (isSummaryStale_)
      around_.display.Error("the summary cannot be written now; it is tried again");
    WorkThrough();
    return End();
  }

 private:
  ExitCode Refuse(const std::string& why) {
    around_.display.Error(why);
    return ExitCode::kCouldNotRun;
  }

  void WorkThrough() {
    while (true) {
      TakeStops();
      BeginSome();
      if (running_.empty()) return;
      Follow();
      RenewSummary();
      ShowAll();
      Pause(kPause);
    }
  }

  void TakeStops() {
    StopRequests& stops = around_.stops;
    if (request_.stopOnStdinEnd && around_.display.OutputBroken()) stops.AskOnce("output");
    if (stops.Count() == 0) return;
    if (!stopTold_) {
      stopTold_ = true;
      around_.display.Stop(stops.FirstReason());
      for (auto& [index, running] : running_) running->console.AskToStop();
    }
    if (stops.IsSessionEnding() && !sessionEndsAt_)
      sessionEndsAt_ = Now() + kSessionEndMilliseconds;
    const bool atOnce = stops.Count() > 1 || (sessionEndsAt_ && Now() >= *sessionEndsAt_);
    if (!atOnce || endedAtOnce_) return;
    endedAtOnce_ = true;
    around_.display.Stop("force");
    for (auto& [index, running] : running_) running->console.EndAll();
  }

  void BeginSome() {
    while (!stopTold_ && !isFull_) {
      const std::optional<std::size_t> index = NextToBegin(entries_, request_.limits);
      if (!index) return;
      const std::optional<std::uint64_t> space = FreeBytes(root_);
      isFull_ = space && *space < SpaceWatch::kLeast;
      if (!isFull_) Begin(*index);
    }
  }

  std::vector<std::wstring> ArgumentsOf(const BatchEntry& entry) const {
    std::vector<std::string> arguments = {"export", "--path", entry.database.path, "--out",
                                          WideToUtf8(entry.folder)};
    if (!entry.database.server.empty())
      arguments.insert(arguments.end(), {"--server", entry.database.server});
    arguments.insert(arguments.end(), {"--atomic", "--json", "--stop-on-stdin-end"});
    if (entry.wasResumed) arguments.emplace_back("--resume");
    arguments.insert(arguments.end(), request_.exportOptions.begin(), request_.exportOptions.end());
    std::vector<std::wstring> wide(arguments.size());
    std::transform(arguments.begin(), arguments.end(), wide.begin(), Utf8ToWide);
    return wide;
  }

  void Begin(std::size_t index) {
    BatchEntry& entry = entries_[index];
    entry.state = BatchState::kRunning;
    entry.started = entry.since = UtcNow();
    around_.display.Begin(entry);
    isSummaryStale_ = true;
    auto running =
        std::make_unique<RunningExport>(ArgumentsOf(entry), around_.password, entry.database);
    if (running->console.Started()) {
      running_.emplace(index, std::move(running));
      return;
    }
    const std::string error = std::to_string(running->console.systemError());
    Finish(entry, ExitCode::kCouldNotRun,
           "larkspan-console could not be started again (error " + error + ")");
  }

  void Follow() {
    for (auto next = running_.begin(); next != running_.end();) {
      const auto current = next++;
      RunningExport& running = *current->second;
      BatchEntry& entry = entries_[current->first];
      // Asked before its lines are taken, so that none comes behind the last look.
      const bool hasEnded = running.console.HasEnded();
      for (const std::string& line : running.console.TakeLines())
        around_.display.Line(entry, line, running.reader.Take(line));
      if (!hasEnded) continue;
      FinishAsItEnded(running, entry);
      running_.erase(current);
    }
  }

  void FinishAsItEnded(const RunningExport& running, BatchEntry& entry) {
    const EventReader& reader = running.reader;
    const std::optional<ExitCode> code = running.console.Code();
    if (!reader.out().empty()) TakeOutcome(Utf8ToWide(reader.out()), entry);
    if (!code || endedAtOnce_) return Finish(entry, CodeOfTheDead(), ReasonOfTheDead(running));
    if (*code == ExitCode::kStopped && stopTold_)
      return Finish(entry, *code, "stopped with the batch");
    Finish(entry, *code, reader.reason().empty() ? reader.lastMessage() : reader.reason());
  }

  ExitCode CodeOfTheDead() const {
    return endedAtOnce_ ? ExitCode::kStopped : ExitCode::kIncomplete;
  }

  std::string ReasonOfTheDead(const RunningExport& running) const {
    if (endedAtOnce_) return "ended at once, as asked";
    return "its larkspan-console ended with code " + NoteIdText(running.console.SystemCode());
  }

  void Finish(BatchEntry& entry, ExitCode code, const std::string& reason) {
    entry.state = BatchState::kDone;
    entry.code = code;
    entry.reason = code == ExitCode::kWhole ? "" : reason;
    if (entry.ended < entry.started) entry.ended = UtcNow();
    around_.display.Finish(entry);
    isSummaryStale_ = true;
  }

  // Whoever reads it may hold it for a moment; it is renewed when it is let go.
  void RenewSummary() {
    const std::uint64_t begun = Now();
    if (!isSummaryStale_ || begun < summaryWaitsUntil_) return;
    isSummaryStale_ = !KeepSummary();
    const std::uint64_t end = Now();
    summaryWaitsUntil_ = end + std::max(kRenewalMilliseconds, kRenewalShare * (end - begun));
  }

  void ShowAll() {
    std::vector<RunningView> views;
    for (const auto& [index, running] : running_)
      views.push_back({running->reader.view(), running->reader.pace()});
    around_.display.Update(CountEntries(entries_), views, Now());
  }

  bool KeepSummary() {
    return WriteSummary(root_, {WideToUtf8(root_), request_.listFile, LARKSPAN_VERSION, UtcNow(),
                                !isOver_, entries_});
  }

  // What was not begun was stopped, or had no room.
  ExitCode CodeOfAll() const {
    const ExitCode worst = WorstCode(entries_);
    if (CountEntries(entries_).notBegun == 0) return worst;
    return WorseOf(worst, stopTold_ ? ExitCode::kStopped : ExitCode::kIncomplete);
  }

  ExitCode End() {
    isOver_ = true;
    BatchEnd end;
    end.counts = CountEntries(entries_);
    end.code = CodeOfAll();
    if (end.counts.notBegun > 0)
      end.reason = stopTold_ ? "it was stopped" : "less than 64 MB are free on the disk";
    // Whoever reads it may hold it for a moment.
    if (RetryWithPause(
            kLastTries, kLastPause, [this] { return KeepSummary(); }, [](int) {})) {
      end.summary = WideToUtf8(root_ + kSummaryPage);
    } else {
      around_.display.Error("the summary cannot be written");
      end.code = WorseOf(end.code, ExitCode::kIncomplete);
    }
    end.seconds = (Now() - begun_) / 1000;
    around_.display.End(end);
    around_.stops.AllEnded();
    return end.code;
  }

  const BatchRequest& request_;
  const BatchSurroundings& around_;
  const std::wstring root_;
  const std::uint64_t begun_;
  std::vector<BatchEntry> entries_;
  std::map<std::size_t, std::unique_ptr<RunningExport>> running_;
  std::optional<std::uint64_t> sessionEndsAt_;
  std::uint64_t summaryWaitsUntil_ = 0;
  bool isSummaryStale_ = false;
  bool stopTold_ = false;
  bool endedAtOnce_ = false;
  bool isFull_ = false;  // No export is begun any more.
  bool isOver_ = false;
};

}  // namespace

ExitCode RunBatch(const BatchRequest& request, const BatchSurroundings& surroundings) {
  return Batch(request, surroundings).Run();
}

}  // namespace larkspan::console
