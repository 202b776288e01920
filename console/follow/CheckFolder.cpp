#include "console/follow/CheckFolder.h"

#include <stdexcept>
#include <utility>

#include "console/bag/VerifyExport.h"
#include "console/follow/Host.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

bool WasStall(const Outcome& outcome, const std::optional<std::uint32_t>& note) {
  for (const Restart& restart : outcome.restarts) {
    if (restart.note == note && restart.cause == "stall") return true;
  }
  return false;
}

// What the folder cannot tell: which deaths were hangs, that this program is at work there, which
// views were lost, and that the acl.dxl is that of an earlier run.
void MendAccount(const Outcome& outcome, bool aclIsPutBack, Account& account) {
  std::erase_if(account.warnings, [](const Warning& warning) {
    return warning.kind == "running" || warning.kind == "stopped";
  });
  if (aclIsPutBack) {
    std::erase_if(account.findings, [](const Finding& finding) {
      return finding.kind == "contradiction" && finding.file == "acl.dxl";
    });
  }
  std::erase_if(account.losses, [](const Loss& loss) { return loss.kind == LossKind::kView; });
  account.losses.insert(account.losses.end(), outcome.lostViews.begin(), outcome.lostViews.end());
  for (Loss& loss : account.losses) {
    if (loss.stage == "crash" && WasStall(outcome, loss.id)) loss.stage = "stall";
  }
}

void TakeBrokenOffCheck(ExportWork& work, int stopsBefore) {
  if (work.around.stops.Count() == stopsBefore || work.outcome().stop) return;
  work.outcome().stop = Stop{UtcNow(), work.around.stops.FirstReason()};
  work.around.display.Stop(work.outcome().stop->by);
}

// An attempt that is sealed already is judged as a bag, too.
std::optional<Account> AccountOf(ExportWork& work, const FileProgress& progress) {
  try {
    std::optional<ExportVerdict> verdict =
        VerifyExport(work.folder(), {progress, progress}, work.facts.cannotJudge);
    if (verdict) return std::move(verdict->account);
  } catch (const std::runtime_error& error) {
    work.facts.cannotJudge = error.what();
  }
  return std::nullopt;
}

}  // namespace

void CheckFolder(ExportWork& work, RunFollower& follower) {
  if (!work.onlyPlacing) work.keeper.Write();
  const int stopsBefore = work.around.stops.Count();
  work.outcome().account = AccountOf(work, [&](std::uint64_t done, std::uint64_t all) {
    follower.ShowChecking(done, all);
    if (!work.onlyPlacing) work.keeper.Renew(Now());
    return work.around.stops.Count() == stopsBefore;
  });
  if (!work.outcome().account) return TakeBrokenOffCheck(work, stopsBefore);
  Account& account = *work.outcome().account;
  MendAccount(work.outcome(), work.aclIsPutBack, account);
  for (const Loss& loss : account.losses) {
    if (loss.kind != LossKind::kView || !work.viewsAreTold) work.losses.Tell(loss);
  }
}

}  // namespace larkspan::console
