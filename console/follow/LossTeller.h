// Tells each loss once, whoever comes across it: a line of the log while the run goes on, or the
// check when it is over.
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <utility>

#include "console/account/Account.h"
#include "console/show/RunDisplay.h"

namespace larkspan::console {

class LossTeller {
 public:
  explicit LossTeller(RunDisplay& display) : display_(display) {}

  // The worker that came across it, by its number, where there are several.
  void Tell(const Loss& loss, std::optional<std::uint32_t> worker = std::nullopt) {
    // Of views that nothing names there are several that look alike.
    const bool isView = loss.kind == LossKind::kView && !loss.id;
    if (isView || told_.emplace(loss.kind, loss.id.value_or(0)).second)
      display_.Lost({loss, worker});
  }

 private:
  RunDisplay& display_;
  std::set<std::pair<LossKind, std::uint32_t>> told_;
};

}  // namespace larkspan::console
