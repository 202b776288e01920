// One thing that doctor looks at, and what came of it. Texts are UTF-8.
#pragma once

#include <string>
#include <utility>

namespace larkspan::console {

enum class CheckResult { kPassed, kWarning, kFailed, kNotTried };

struct CheckFinding {
  CheckResult result = CheckResult::kNotTried;
  std::string detail;  // What was seen, or why it was not tried.
  std::string advice;  // What to do, in one sentence; empty where there is nothing to do.
};

struct Check {
  std::string name;
  CheckFinding finding;
};

inline CheckFinding Passed(std::string detail) {
  return {CheckResult::kPassed, std::move(detail), {}};
}

inline CheckFinding Warned(std::string detail, std::string advice) {
  return {CheckResult::kWarning, std::move(detail), std::move(advice)};
}

inline CheckFinding Failed(std::string detail, std::string advice) {
  return {CheckResult::kFailed, std::move(detail), std::move(advice)};
}

inline CheckFinding NotTried(std::string why) {
  return {CheckResult::kNotTried, std::move(why), {}};
}

// "passed", "warning", "failed" or "not tried".
const char* ResultWord(CheckResult result);

}  // namespace larkspan::console
