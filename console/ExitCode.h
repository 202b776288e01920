// What the exit code of every command says. 0 never stands over a loss.
#pragma once

namespace larkspan::console {

enum class ExitCode {
  kWhole = 0,
  kUsage = 1,
  kCouldNotRun = 2,  // Nothing was exported, or there is nothing to judge.
  kLosses = 3,       // Done; what is lost is listed.
  kStopped = 4,      // By the user.
  kIncomplete = 5,   // The export broke off, or not all of it is accounted for.
};

}  // namespace larkspan::console
