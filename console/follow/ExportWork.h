// What the parts of one export share, and each of them adds to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "console/account/Account.h"
#include "console/follow/ExportRequest.h"
#include "console/follow/ExportSurroundings.h"
#include "console/follow/Judgement.h"
#include "console/follow/LossTeller.h"
#include "console/follow/OutcomeKeeper.h"
#include "console/follow/Resumption.h"

namespace larkspan::console {

struct ExportWork {
  // The folder is the one that was asked for until the keeper is told another.
  ExportWork(const ExportRequest& request, const ExportSurroundings& around);

  const std::wstring& folder() const { return keeper.folder(); }
  Outcome& outcome() { return keeper.outcome(); }

  void TellEnd(const Judgement& judgement, const std::optional<Account>& account,
               std::uint64_t milliseconds) const;

  const ExportRequest& request;
  const ExportSurroundings& around;
  const std::wstring out;
  OutcomeKeeper keeper;
  LossTeller losses;
  RunFacts facts;
  std::optional<Resumption> resumption;  // Of a run that is taken up again.
  bool viewsAreTold = false;
  bool aclIsPutBack = false;
  bool onlyPlacing = false;  // The run was cut off when all of it was done.
};

}  // namespace larkspan::console
