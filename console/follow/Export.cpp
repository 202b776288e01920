// Step by step:
//   1. The folder: made, found empty, tried with a probe. With --atomic it is a new attempt beside
//      the final name, unless a finished export has that already.
//   2. outcome.json says that the export is running, from then on.
//   3. The exporter runs and is followed.
//   4. Did it die, or hang, among the views, it is run again in the same folder without them: the
//      notes matter most. The views that are not there then are told as lost.
//   5. The folder is verified: every note is accounted for from what the disk holds.
//   6. outcome.json says how it ended; with --atomic a good export gets its name.
#include "console/follow/Export.h"

#include <utility>

#include "base/FolderFiles.h"
#include "base/OutputPaths.h"
#include "console/account/Verify.h"
#include "console/follow/AtomicFolder.h"
#include "console/follow/EarlierRun.h"
#include "console/follow/ExporterArguments.h"
#include "console/follow/ExporterProcess.h"
#include "console/follow/Host.h"
#include "console/follow/Judgement.h"
#include "console/follow/LossTeller.h"
#include "console/follow/OutcomeKeeper.h"
#include "console/follow/OutputFolder.h"
#include "console/follow/Resumption.h"
#include "console/follow/RunFollower.h"
#include "console/follow/SupervisedWorkers.h"
#include "console/follow/ViewLosses.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

Outcome NewOutcome(const ExportRequest& request, const std::vector<std::string>& command) {
  Outcome outcome;
  outcome.command = command;
  outcome.consoleVersion = LARKSPAN_VERSION;
  outcome.larkspanVersion = FileVersion(ExporterPath());
  outcome.host = HostName();
  outcome.user = UserName();
  outcome.server = request.server;
  outcome.path = request.path;
  outcome.archive = request.archive;
  outcome.views = request.views;
  outcome.fullAccess = request.fullAccess;
  outcome.idFile = request.idFile;
  outcome.notesIni = request.notesIni;
  outcome.started = UtcNow();
  outcome.progress.phase = PhaseWord(Phase::kStarting);
  return outcome;
}

FollowOptions FollowOptionsOf(const ExportRequest& request) {
  return {request.archive, request.stopOnStdinEnd, request.stallMilliseconds, request.giveUp};
}

class Export {
 public:
  Export(const ExportRequest& request, const ExportSurroundings& surroundings)
      : request_(request),
        around_(surroundings),
        out_(WholePath(request.out)),
        keeper_(out_, NewOutcome(request, surroundings.command)),
        losses_(surroundings.display) {}

  ExitCode Run() {
    const std::optional<std::wstring> earlier = FolderToResume(request_);
    if (request_.atomic) keeper_.MoveTo(earlier ? *earlier : NextAttempt(out_));
    TellStart();
    if (const std::optional<ExitCode> finished = FinishedBefore()) return *finished;
    const FolderLock lock(folder());
    if (!lock.IsHeld()) return EndWithoutRun("another larkspan-console is at work in the folder");
    const std::string fault = earlier ? TakeUp() : PrepareFolder();
    if (!fault.empty()) return EndWithoutRun(fault);
    RunFollower follower(FollowOptionsOf(request_), keeper_, around_.display, losses_,
                         around_.stops);
    if (!onlyPlacing_) {
      RunExporter(follower, request_.views);
      if (DiedAmongViews(follower)) {
        GoOnWithoutViews(follower);
      } else {
        WarnOfViews(follower.state());
      }
    }
    Account(follower);
    const Judgement judgement = End(follower);
    return Place(judgement, follower);
  }

 private:
  const std::wstring& folder() const { return keeper_.folder(); }
  Outcome& outcome() { return keeper_.outcome(); }

  // Where a finished export has its name already, nothing is done.
  std::optional<ExitCode> FinishedBefore() {
    if ((!request_.atomic && !request_.resume) || !FolderExists(out_) || IsEmptyFolder(out_)) {
      return std::nullopt;
    }
    Outcome earlier;
    const bool same =
        ReadOutcome(out_, earlier) == OutcomeReading::kRead && IsSameExport(earlier, request_);
    const bool finished = same && earlier.state == Outcome::State::kEnded && earlier.exitCode &&
                          (request_.atomic || IsFinished(earlier));
    if (finished) {
      keeper_.MoveTo(out_);
      around_.display.Message("This export was finished before.");
      TellEnd({*earlier.exitCode, earlier.reason}, earlier.account, 0);
      return earlier.exitCode;
    }
    if (!request_.atomic) return std::nullopt;
    return EndWithoutRun("the folder '" + request_.out +
                         "' holds something that is not this export, finished");
  }

  // Goes on with a run that was cut off.
  std::string TakeUp() {
    Outcome earlier;
    if (ReadOutcome(folder(), earlier) != OutcomeReading::kRead)
      return "outcome.json cannot be read";
    onlyPlacing_ = IsFinished(earlier);
    if (onlyPlacing_) {
      // What it says of itself is what the folder is held against.
      outcome() = earlier;
      return {};
    }
    aclIsPutBack_ = SettleMovedAside(folder());
    resumption_ = PlanResumption(folder(), earlier);
    if (resumption_->isImpossible) {
      return "idtable.txt is damaged, and notes were exported by it: empty the folder";
    }
    PrepareResumption(folder(), *resumption_);
    outcome().started = earlier.started;
    outcome().restarts = earlier.restarts;
    outcome().warnings = earlier.warnings;
    outcome().resumed = earlier.resumed;
    if (resumption_->first) {
      outcome().lostViews = earlier.lostViews;
      outcome().progress = earlier.progress;
    }
    outcome().resumed.push_back({UtcNow(), resumption_->triedAgain});
    return keeper_.Write() ? "" : "outcome.json cannot be written";
  }

  std::string PrepareFolder() {
    std::string fault = MakeEmptyFolder(folder());
    if (fault.empty() && !keeper_.Write()) fault = "outcome.json cannot be written";
    return fault;
  }

  ExitCode EndWithoutRun(const std::string& reason) {
    const Judgement judgement{ExitCode::kCouldNotRun, reason};
    TellEnd(judgement, std::nullopt, 0);
    return judgement.code;
  }

  void TellStart() {
    around_.display.Start({request_.server, request_.path, WideToUtf8(folder()),
                           request_.archive ? "archive" : "design", around_.command});
  }

  void TellEnd(const Judgement& judgement, const std::optional<console::Account>& account,
               std::uint64_t milliseconds) {
    EndEvent end;
    end.exitCode = judgement.code;
    end.reason = judgement.reason;
    end.out = WideToUtf8(folder());
    if (account) end.counts = account->notes;
    end.seconds = milliseconds / 1000;
    around_.display.End(end);
  }

  void RunExporter(RunFollower& follower, bool views) {
    const std::wstring program = ExporterPath();
    std::vector<std::wstring> arguments = ExporterArguments(request_, folder(), views);
    if (resumption_ && resumption_->first) return RunWorkers(follower, program, arguments);
    ExporterProcess exporter(program, std::move(arguments), request_.archive, around_.password);
    if (!exporter.Started()) {
      facts_.notStarted = NotStartedText(program, exporter.systemError());
      return;
    }
    follower.Follow(exporter);
    // Whoever ends it from outside may do that with the same code.
    constexpr DWORD kRefused = 1;
    if (exporter.ExitCode() == kRefused && !FileExists(output::Join(folder(), output::kAudit))) {
      facts_.notStarted =
          "larkspan.exe refused its command line, or the folder '" + WideToUtf8(folder()) + "'";
    }
  }

  void RunWorkers(RunFollower& follower, const std::wstring& program,
                  const std::vector<std::wstring>& arguments) {
    const FirstWorker& first = *resumption_->first;
    follower.GoOnBehind(resumption_->done, resumption_->all,
                        first.noteIsLost ? std::optional(first.noteId) : std::nullopt);
    const RunLog log(folder(), request_.debug ? LogLevel::kDebug : LogLevel::kWarning);
    SupervisedWorkers workers(program, arguments, request_.archive, around_.password, log, first);
    follower.Follow(workers);
    SettleMovedAside(folder());
  }

  bool DiedAmongViews(const RunFollower& follower) {
    return facts_.notStarted.empty() && !outcome().stop && request_.views &&
           follower.state().phase() == Phase::kViews &&
           !FileExists(output::Join(folder(), output::kIdTable));
  }

  void GoOnWithoutViews(RunFollower& follower) {
    const char* cause = follower.HungAmongViews() ? "stall" : "crash";
    const RunState first = follower.state();
    std::vector<Loss>& lost = outcome().lostViews;
    lost = LostViews(folder(), first, cause);
    outcome().restarts.push_back({UtcNow(), std::nullopt, cause});
    keeper_.Write();
    around_.display.Restart({std::nullopt, cause});
    around_.display.Retry({"without views", std::string("a ") + cause + " among the views"});
    follower.GoOnWithoutViews();
    MoveDatabaseFilesAside(folder());
    RunExporter(follower, false);
    aclIsPutBack_ = SettleMovedAside(folder());
    NameUnreachedViews(folder(), first.begunViews(), lost);
    for (const Loss& loss : lost) losses_.Tell(loss);
    viewsAreTold_ = true;
    WarnOfViews(first);
  }

  void WarnOfViews(const RunState& state) {
    const std::optional<Warning> warning =
        WarnOfViewsWithoutFile(folder(), state.begunViews(), outcome().lostViews);
    if (!warning || outcome().stop) return;
    outcome().warnings.push_back(*warning);
    around_.display.Warn(*warning);
  }

  void Account(RunFollower& follower) {
    facts_.phase = follower.state().phase();
    facts_.hasBegunNotes = follower.state().HasBegunNotes();
    facts_.lastError = follower.lastError();
    if (!facts_.notStarted.empty()) return;
    if (!onlyPlacing_) keeper_.Write();
    const int stopsBefore = around_.stops.Count();
    std::optional<console::Account> account = VerifyFolder(
        folder(),
        [&](std::uint64_t done, std::uint64_t all) {
          follower.ShowChecking(done, all);
          if (!onlyPlacing_) keeper_.Renew(Now());
          return around_.stops.Count() == stopsBefore;
        },
        facts_.cannotJudge);
    outcome().account = std::move(account);
    if (!outcome().account) return TakeBrokenOffCheck(stopsBefore);
    MendAccount(*outcome().account);
    for (const Loss& loss : outcome().account->losses) {
      if (loss.kind != LossKind::kView || !viewsAreTold_) losses_.Tell(loss);
    }
  }

  void TakeBrokenOffCheck(int stopsBefore) {
    if (around_.stops.Count() == stopsBefore || outcome().stop) return;
    outcome().stop = Stop{UtcNow(), around_.stops.FirstReason()};
    around_.display.Stop(outcome().stop->by);
  }

  // What the folder cannot tell: which deaths were hangs, that this program is at work there, which
  // views were lost, and that the acl.dxl is that of an earlier run.
  void MendAccount(console::Account& account) {
    std::erase_if(account.warnings, [](const Warning& warning) {
      return warning.kind == "running" || warning.kind == "stopped";
    });
    if (aclIsPutBack_) {
      std::erase_if(account.findings, [](const Finding& finding) {
        return finding.kind == "contradiction" && finding.file == "acl.dxl";
      });
    }
    std::erase_if(account.losses, [](const Loss& loss) { return loss.kind == LossKind::kView; });
    account.losses.insert(account.losses.end(), outcome().lostViews.begin(),
                          outcome().lostViews.end());
    for (Loss& loss : account.losses) {
      if (loss.stage == "crash" && WasStall(loss.id)) loss.stage = "stall";
    }
  }

  bool WasStall(const std::optional<std::uint32_t>& note) {
    for (const Restart& restart : outcome().restarts) {
      if (restart.note == note && restart.cause == "stall") return true;
    }
    return false;
  }

  Judgement End(RunFollower& follower) {
    Judgement judgement = Judge(facts_, outcome().stop, outcome().account, request_.maxLosses);
    outcome().state = Outcome::State::kEnded;
    outcome().ended = UtcNow();
    outcome().progress.phase = PhaseWord(Phase::kEnded);
    outcome().exitCode = judgement.code;
    outcome().reason = judgement.reason;
    // Without it nobody could tell later what only this run knows.
    const bool isGood = judgement.code == ExitCode::kWhole || judgement.code == ExitCode::kLosses;
    if (!keeper_.Write() && isGood) {
      judgement = {ExitCode::kIncomplete, "outcome.json could not be written"};
    }
    follower.ShowEnded();
    if (!WantsPlacing(judgement)) {
      TellEnd(judgement, outcome().account, follower.ElapsedMilliseconds());
    }
    return judgement;
  }

  bool WantsPlacing(const Judgement& judgement) const {
    return request_.atomic &&
           (judgement.code == ExitCode::kWhole || judgement.code == ExitCode::kLosses);
  }

  ExitCode Place(Judgement judgement, const RunFollower& follower) {
    if (!WantsPlacing(judgement)) return judgement.code;
    const auto stopped = [&] { return IsStoppedBeforePlacing(); };
    if (request_.confirm && !IsConfirmed()) {
      judgement = {ExitCode::kStopped, "complete, and left under the name of its attempt as asked"};
    } else if (PlaceAttempt(folder(), out_, stopped)) {
      keeper_.MoveTo(out_);
    } else {
      judgement = {stopped() ? ExitCode::kStopped : ExitCode::kIncomplete,
                   "complete, but '" + request_.out + "' could not be given to it as its name"};
    }
    if (judgement.code != *outcome().exitCode) {
      outcome().exitCode = judgement.code;
      outcome().reason = judgement.reason;
      keeper_.Write();
    }
    TellEnd(judgement, outcome().account, follower.ElapsedMilliseconds());
    return judgement.code;
  }

  // A caller that has said its word may go.
  bool IsStoppedBeforePlacing() const {
    return request_.confirm ? around_.stops.IsByUser() : around_.stops.Count() > 0;
  }

  // Waits for the word of whoever started this.
  bool IsConfirmed() {
    const console::Account& account = *outcome().account;
    around_.display.Ready({account.Verdict(), account.notes, account.losses.size(),
                           account.findings.size(), account.warnings.size()});
    if (!around_.input) around_.input = LineSource::StandardInput();
    while (!around_.stops.IsByUser()) {
      if (const std::optional<std::string> word = around_.input->TakeOne()) {
        if (*word == "place") return true;
        if (*word == "leave") return false;
      } else if (around_.input->HasEnded() || around_.stops.Count() > 0) {
        return false;
      } else {
        WaitForSingleObject(around_.input->event(), 100);
      }
    }
    return false;
  }

  const ExportRequest& request_;
  const ExportSurroundings& around_;
  std::wstring out_;
  OutcomeKeeper keeper_;
  LossTeller losses_;
  RunFacts facts_;
  std::optional<Resumption> resumption_;  // Of a run that is taken up again.
  bool viewsAreTold_ = false;
  bool aclIsPutBack_ = false;
  bool onlyPlacing_ = false;  // The run was cut off when all of it was done.
};

}  // namespace

ExitCode RunExport(const ExportRequest& request, const ExportSurroundings& surroundings) {
  return Export(request, surroundings).Run();
}

}  // namespace larkspan::console
