// What an export comes to, from what its run did and what its folder holds.
#pragma once

#include <optional>
#include <string>

#include "console/account/Account.h"
#include "console/account/Outcome.h"
#include "console/follow/ExportRequest.h"
#include "console/follow/Phase.h"

namespace larkspan::console {

struct RunFacts {
  std::string notStarted;  // Why the exporter never worked; empty when it did.
  Phase phase = Phase::kStarting;
  bool hasBegunNotes = false;
  std::string lastError;    // The last ERROR line of its log.
  std::string cannotJudge;  // Why there is no account.
};

struct Judgement {
  ExitCode code = ExitCode::kWhole;
  std::string reason;  // One sentence for a code other than 0.
};

// Why a run that was stopped ended.
std::string StopReason(const Stop& stop);

Judgement Judge(const RunFacts& run, const std::optional<Stop>& stop,
                const std::optional<Account>& account, const std::optional<LossLimit>& limit);

}  // namespace larkspan::console
