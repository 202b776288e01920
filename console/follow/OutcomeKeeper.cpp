#include "console/follow/OutcomeKeeper.h"

#include <utility>

#include "console/text/Utf.h"

namespace larkspan::console {

OutcomeKeeper::OutcomeKeeper(std::wstring folder, Outcome outcome)
    : folder_(std::move(folder)), outcome_(std::move(outcome)) {}

bool OutcomeKeeper::Write() {
  if (!writes_) return true;
  outcome_.updated = UtcNow();
  return WriteOutcome(folder_, outcome_);
}

void OutcomeKeeper::Renew(std::uint64_t now) {
  if (now - written_ < kPeriod) return;
  written_ = now;
  Write();
}

}  // namespace larkspan::console
