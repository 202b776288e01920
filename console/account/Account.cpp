#include "console/account/Account.h"

namespace larkspan::console {

ExitCode Account::Verdict() const {
  if (!findings.empty()) return ExitCode::kIncomplete;
  return losses.empty() ? ExitCode::kWhole : ExitCode::kLosses;
}

}  // namespace larkspan::console
