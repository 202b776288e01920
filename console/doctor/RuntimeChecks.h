// The Notes runtime is started by a real worker, which is asked for a database that is not there.
#pragma once

#include <string>
#include <vector>

#include "console/doctor/Check.h"
#include "console/doctor/TrialRun.h"

namespace larkspan::console {

// What the worker left.
struct RuntimeTrial {
  TrialEnd end;
  std::string error;                  // The last ERROR of its log, ...
  std::vector<std::string> warnings;  // ... and all WARNINGs.
  std::string user;  // Empty: it did not come so far, or the library does not tell.
};

// The second value is a sentence when no folder could be made for it.
RuntimeTrial TryRuntime(const TrialSurroundings& around, std::string& whyNot);

CheckFinding JudgeRuntime(const RuntimeTrial& trial, std::uint64_t timeoutMilliseconds);

// Of a runtime that starts: as whom the library works.
CheckFinding JudgeUser(const RuntimeTrial& trial);

// What is said of a worker that did not come to its own end, and what to do; "It ended by ...".
CheckFinding JudgeBadEnd(const TrialEnd& end, std::uint64_t timeoutMilliseconds);

}  // namespace larkspan::console
