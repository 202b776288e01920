// When the exporter dies, or hangs, among the views, it is run again in the same folder without
// them: the notes matter most. The views that are not there then are told as lost.
#include "console/follow/RunExporter.h"

#include <utility>

#include "base/FolderFiles.h"
#include "base/OutputPaths.h"
#include "console/follow/ExporterArguments.h"
#include "console/follow/ExporterProcess.h"
#include "console/follow/OutputFolder.h"
#include "console/follow/SharedRun.h"
#include "console/follow/SupervisedWorkers.h"
#include "console/follow/ViewLosses.h"
#include "console/parts/JoinParts.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

class ExporterRuns {
 public:
  ExporterRuns(ExportWork& work, RunFollower& follower) : work_(work), follower_(follower) {}

  void Run() {
    RunOnce(work_.request.views);
    if (DiedAmongViews()) {
      GoOnWithoutViews();
    } else {
      WarnOfViews(follower_.state());
    }
    SettleDesignFiles(folder());
  }

 private:
  const std::wstring& folder() const { return work_.folder(); }

  void RunOnce(bool views) {
    const std::wstring program = ExporterPath();
    std::vector<std::wstring> arguments = ExporterArguments(work_.request, folder(), views);
    if (IsShared() && RunShared(work_, follower_, views)) return;
    if (work_.resumption && work_.resumption->first) return RunWorkers(program, arguments);
    ExporterProcess exporter(program, std::move(arguments), work_.request.archive,
                             work_.around.password);
    if (!exporter.Started()) {
      work_.facts.notStarted = NotStartedText(program, exporter.systemError());
      return;
    }
    follower_.Follow(exporter);
    // Whoever ends it from outside may do that with the same code.
    constexpr DWORD kRefused = 1;
    if (exporter.ExitCode() == kRefused && !FileExists(output::Join(folder(), output::kAudit))) {
      work_.facts.notStarted =
          "larkspan.exe refused its command line, or the folder '" + WideToUtf8(folder()) + "'";
    }
  }

  // What several workers have begun they end.
  bool IsShared() const {
    // Behind note ID 0 a first worker would begin anew.
    const bool beginsAnew =
        work_.resumption && work_.resumption->first && work_.resumption->first->noteId == 0;
    return work_.request.archive && !beginsAnew &&
           (work_.request.workers > 1 || HasParts(folder()));
  }

  void RunWorkers(const std::wstring& program, const std::vector<std::wstring>& arguments) {
    const Resumption& resumption = *work_.resumption;
    const FirstWorker& first = *resumption.first;
    follower_.GoOnBehind(resumption.done, resumption.all,
                         first.noteIsLost ? std::optional(first.noteId) : std::nullopt);
    const RunLog log(folder(), work_.request.debug ? LogLevel::kDebug : LogLevel::kWarning);
    SupervisedWorkers workers(program, arguments, work_.request.archive, work_.around.password, log,
                              first);
    follower_.Follow(workers);
  }

  bool DiedAmongViews() {
    return work_.facts.notStarted.empty() && !work_.outcome().stop && work_.request.views &&
           follower_.state().phase() == Phase::kViews &&
           !FileExists(output::Join(folder(), output::kIdTable));
  }

  void GoOnWithoutViews() {
    RunDisplay& display = work_.around.display;
    const char* cause = follower_.HungAmongViews() ? "stall" : "crash";
    const RunState first = follower_.state();
    std::vector<Loss>& lost = work_.outcome().lostViews;
    lost = LostViews(folder(), first, cause);
    work_.outcome().restarts.push_back({UtcNow(), std::nullopt, cause});
    work_.keeper.Write();
    display.Restart({std::nullopt, cause});
    display.Retry({"without views", std::string("a ") + cause + " among the views"});
    follower_.GoOnWithoutViews();
    MoveDatabaseFilesAside(folder());
    RunOnce(false);
    work_.aclIsPutBack = SettleDatabaseFiles(folder());
    NameUnreachedViews(folder(), first.begunViews(), lost);
    for (const Loss& loss : lost) work_.losses.Tell(loss);
    work_.viewsAreTold = true;
    WarnOfViews(first);
  }

  void WarnOfViews(const RunState& state) {
    const std::optional<Warning> warning =
        WarnOfViewsWithoutFile(folder(), state.begunViews(), work_.outcome().lostViews);
    if (!warning || work_.outcome().stop) return;
    work_.outcome().warnings.push_back(*warning);
    work_.around.display.Warn(*warning);
  }

  ExportWork& work_;
  RunFollower& follower_;
};

}  // namespace

void RunExporter(ExportWork& work, RunFollower& follower) { ExporterRuns(work, follower).Run(); }

}  // namespace larkspan::console
