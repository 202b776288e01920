#include "console/follow/TakeUp.h"

#include "console/bag/Bag.h"
#include "console/follow/EarlierRun.h"
#include "console/follow/Host.h"
#include "console/follow/Judgement.h"
#include "console/follow/OutputFolder.h"
#include "console/follow/Phase.h"
#include "console/parts/JoinParts.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

constexpr char kNoOutcome[] = "outcome.json cannot be written";

// What a finished export says of itself is what its folder is held against.
std::string TakeFinished(ExportWork& work, const Outcome& earlier) {
  work.onlyPlacing = true;
  work.outcome() = earlier;
  return {};
}

// What the runs before have done and met.
void Inherit(const Outcome& earlier, const Resumption& resumption, Outcome& outcome) {
  outcome.started = earlier.started;
  outcome.restarts = earlier.restarts;
  outcome.warnings = earlier.warnings;
  outcome.resumed = earlier.resumed;
  if (resumption.first) {
    outcome.lostViews = earlier.lostViews;
    outcome.progress = earlier.progress;
  }
  outcome.resumed.push_back({UtcNow(), resumption.triedAgain});
}

// Nothing else is at work yet.
JoinResult FinishJoiningInSight(ExportWork& work) {
  const std::uint64_t begun = Now();
  return FinishJoining(work.folder(), [&](std::uint64_t done, std::uint64_t all) {
    RunView view;
    view.server = work.request.server;
    view.path = work.request.path;
    view.phase = PhaseWord(Phase::kJoining);
    view.parts = all;
    view.partsDone = done;
    view.elapsed = Now() - begun;
    work.around.display.Update(view, Now());
    StopRequests& stops = work.around.stops;
    if (work.request.stopOnStdinEnd && work.around.display.OutputBroken()) stops.AskOnce("output");
    return stops.Count() == 0;
  });
}

// outcome.json stays as it was.
std::string StopBeforeTheRun(ExportWork& work) {
  work.outcome().stop = Stop{UtcNow(), work.around.stops.FirstReason()};
  work.around.display.Stop(work.outcome().stop->by);
  return StopReason(*work.outcome().stop);
}

}  // namespace

std::string PrepareFolder(ExportWork& work) {
  const std::string fault = MakeEmptyFolder(work.folder());
  if (!fault.empty()) return fault;
  return work.keeper.Write() ? "" : kNoOutcome;
}

std::string TakeUp(ExportWork& work) {
  Outcome earlier;
  if (ReadEarlierOutcome(work.folder(), earlier) != OutcomeReading::kRead)
    return "outcome.json cannot be read";
  // A byte that is written into a bag breaks its seal.
  const bool isSealed = IsBag(work.folder());
  if (isSealed) work.keeper.WriteNothing();
  if (IsFinished(earlier)) return TakeFinished(work, earlier);
  if (isSealed) return "the folder is a bag, and the export in it did not come to its end";
  const JoinResult joining = FinishJoiningInSight(work);
  if (joining.isBrokenOff) return StopBeforeTheRun(work);
  if (!joining.isDone)
    return "what several workers have exported cannot be joined; another program may hold '" +
           WideToUtf8(joining.blocked) + "'";
  work.aclIsPutBack = SettleDatabaseFiles(work.folder());
  work.resumption = PlanResumption(work.folder(), earlier);
  if (work.resumption->isImpossible) {
    return "idtable.txt is damaged, and notes were exported by it: empty the folder";
  }
  PrepareResumption(work.folder(), *work.resumption);
  Inherit(earlier, *work.resumption, work.outcome());
  return work.keeper.Write() ? "" : kNoOutcome;
}

}  // namespace larkspan::console
