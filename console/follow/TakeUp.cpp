#include "console/follow/TakeUp.h"

#include "console/bag/Bag.h"
#include "console/follow/EarlierRun.h"
#include "console/follow/OutputFolder.h"
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
  work.aclIsPutBack = SettleMovedAside(work.folder());
  work.resumption = PlanResumption(work.folder(), earlier);
  if (work.resumption->isImpossible) {
    return "idtable.txt is damaged, and notes were exported by it: empty the folder";
  }
  PrepareResumption(work.folder(), *work.resumption);
  Inherit(earlier, *work.resumption, work.outcome());
  return work.keeper.Write() ? "" : kNoOutcome;
}

}  // namespace larkspan::console
