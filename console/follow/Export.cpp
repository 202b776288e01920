// Step by step:
//   1. The folder: made, found empty, tried with a probe. With --atomic it is a new attempt beside
//      the final name, unless a finished export has that already. With --resume it is that of the
//      run that was cut off.
//   2. outcome.json says that the export is running, from then on.
//   3. The exporter runs and is followed; where it has to be, once more without views.
//   4. The folder is verified: every note is accounted for from what the disk holds.
//   5. outcome.json says how it ended; with --atomic a good export gets its name.
#include "console/follow/Export.h"

#include "base/PathLimits.h"
#include "console/bag/SealState.h"
#include "console/follow/AtomicFolder.h"
#include "console/follow/CheckFolder.h"
#include "console/follow/EarlierRun.h"
#include "console/follow/ExportWork.h"
#include "console/follow/OutputFolder.h"
#include "console/follow/Placement.h"
#include "console/follow/RunExporter.h"
#include "console/follow/TakeUp.h"
#include "console/parts/PartFolders.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

FollowOptions FollowOptionsOf(const ExportRequest& request) {
  return {request.archive, request.stopOnStdinEnd, request.stallMilliseconds, request.giveUp};
}

class Export {
 public:
  Export(const ExportRequest& request, const ExportSurroundings& around)
      : request_(request), work_(request, around) {}

  ExitCode Run() {
    const std::optional<std::wstring> earlier = FolderToResume(request_);
    if (request_.atomic) work_.keeper.MoveTo(earlier ? *earlier : NextAttempt(work_.out));
    TellStart();
    if (const std::string fault = WhySealIsUnfinished(work_.out); !fault.empty())
      return EndWithoutRun("the folder '" + request_.out + "' is half sealed. " + fault);
    if (const std::optional<ExitCode> finished = FinishedBefore()) return *finished;
    if (!HasRoomForParts())
      return EndWithoutRun(
          "the path of the folder is too long for several workers, whose folders lie "
          "below it: take a shorter one, or leave --workers out");
    const FolderLock lock(work_.folder());
    if (!lock.IsHeld()) return EndWithoutRun("another larkspan-console is at work in the folder");
    const std::string fault = earlier ? TakeUp(work_) : PrepareFolder(work_);
    if (!fault.empty()) return EndWithoutRun(fault);
    return RunInFolder();
  }

 private:
  // A worker refuses a folder whose files the system could not reach, and says nothing.
  bool HasRoomForParts() const {
    return request_.workers == 1 || IsWithinPathLimit(PartFolder(work_.folder(), 0), true);
  }

  void TellStart() {
    work_.around.display.Start({request_.server, request_.path, WideToUtf8(work_.folder()),
                                request_.archive ? "archive" : "design", work_.around.command});
  }

  ExitCode EndWithoutRun(const std::string& reason) {
    const ExitCode code = work_.outcome().stop ? ExitCode::kStopped : ExitCode::kCouldNotRun;
    work_.TellEnd({code, reason}, std::nullopt, 0);
    return code;
  }

  // Where a finished export has its name already, nothing is done.
  std::optional<ExitCode> FinishedBefore() {
    const bool asksForIt = request_.atomic || request_.resume;
    if (!asksForIt || !FolderExists(work_.out) || IsEmptyFolder(work_.out)) return std::nullopt;
    Outcome earlier;
    const bool same = ReadEarlierOutcome(work_.out, earlier) == OutcomeReading::kRead &&
                      IsSameExport(earlier, request_);
    const bool finished = same && earlier.state == Outcome::State::kEnded && earlier.exitCode &&
                          (request_.atomic || IsFinished(earlier));
    if (finished) {
      work_.keeper.MoveTo(work_.out);
      work_.around.display.Message("This export was finished before.");
      work_.TellEnd({*earlier.exitCode, earlier.reason}, earlier.account, 0);
      return earlier.exitCode;
    }
    if (!request_.atomic) return std::nullopt;
    return EndWithoutRun("the folder '" + request_.out +
                         "' holds something that is not this export, finished");
  }

  ExitCode RunInFolder() {
    RunFollower follower(FollowOptionsOf(request_), work_.keeper, work_.around.display,
                         work_.losses, work_.around.stops);
    if (!work_.onlyPlacing) RunExporter(work_, follower);
    TakeFacts(follower);
    if (work_.facts.notStarted.empty()) CheckFolder(work_, follower);
    Judgement judgement = End();
    follower.ShowEnded();
    if (WantsPlacing(work_, judgement)) judgement = Place(work_, judgement);
    work_.TellEnd(judgement, work_.outcome().account, follower.ElapsedMilliseconds());
    return judgement.code;
  }

  void TakeFacts(const RunFollower& follower) {
    work_.facts.phase = follower.state().phase();
    work_.facts.hasBegunNotes = work_.onlyPlacing || follower.state().HasBegunNotes();
    work_.facts.lastError = follower.lastError();
  }

  Judgement End() {
    Outcome& outcome = work_.outcome();
    const Judgement judgement =
        Judge(work_.facts, outcome.stop, outcome.account, request_.maxLosses);
    outcome.state = Outcome::State::kEnded;
    outcome.ended = UtcNow();
    outcome.progress.phase = PhaseWord(Phase::kEnded);
    outcome.exitCode = judgement.code;
    outcome.reason = judgement.reason;
    // Without it nobody could tell later what only this run knows.
    const bool isGood = judgement.code == ExitCode::kWhole || judgement.code == ExitCode::kLosses;
    if (!work_.keeper.Write() && isGood)
      return {ExitCode::kIncomplete, "outcome.json could not be written"};
    return judgement;
  }

  const ExportRequest& request_;
  ExportWork work_;
};

}  // namespace

ExitCode RunExport(const ExportRequest& request, const ExportSurroundings& surroundings) {
  return Export(request, surroundings).Run();
}

}  // namespace larkspan::console
