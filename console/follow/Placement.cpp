#include "console/follow/Placement.h"

#include "console/follow/AtomicFolder.h"

namespace larkspan::console {

namespace {

// A caller that has said its word may go.
bool IsStopped(const ExportWork& work) {
  const StopRequests& stops = work.around.stops;
  return work.request.confirm ? stops.IsByUser() : stops.Count() > 0;
}

// Waits for the word of whoever started this.
bool IsConfirmed(ExportWork& work) {
  const Account& account = *work.outcome().account;
  const ExportSurroundings& around = work.around;
  around.display.Ready({account.Verdict(), account.notes, account.losses.size(),
                        account.findings.size(), account.warnings.size()});
  if (!around.input) around.input = LineSource::StandardInput();
  while (!around.stops.IsByUser()) {
    if (const std::optional<std::string> word = around.input->TakeOne()) {
      if (*word == "place") return true;
      if (*word == "leave") return false;
    } else if (around.input->HasEnded() || around.stops.Count() > 0) {
      return false;
    } else {
      WaitForSingleObject(around.input->event(), 100);
    }
  }
  return false;
}

// What it comes to when the name was tried to be given.
Judgement TryToPlace(ExportWork& work, const Judgement& judgement) {
  const auto stopped = [&] { return IsStopped(work); };
  if (work.request.confirm && !IsConfirmed(work))
    return {ExitCode::kStopped, "complete, and left under the name of its attempt as asked"};
  if (!PlaceAttempt(work.folder(), work.out, stopped)) {
    return {stopped() ? ExitCode::kStopped : ExitCode::kIncomplete,
            "complete, but '" + work.request.out + "' could not be given to it as its name"};
  }
  work.keeper.MoveTo(work.out);
  return judgement;
}

}  // namespace

bool WantsPlacing(const ExportWork& work, const Judgement& judgement) {
  return work.request.atomic &&
         (judgement.code == ExitCode::kWhole || judgement.code == ExitCode::kLosses);
}

Judgement Place(ExportWork& work, const Judgement& judgement) {
  const Judgement placed = TryToPlace(work, judgement);
  if (placed.code != *work.outcome().exitCode) {
    work.outcome().exitCode = placed.code;
    work.outcome().reason = placed.reason;
    work.keeper.Write();
  }
  return placed;
}

}  // namespace larkspan::console
