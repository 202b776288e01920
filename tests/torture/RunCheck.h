// What every run is held to: its log holds documented lines only, those that its fault explains
// and, as often as there, those of a run without a fault, and nothing is left open in the library.
#pragma once

#include <map>
#include <string>

#include "tests/torture/DocumentedMessages.h"
#include "tests/torture/Expectation.h"
#include "tests/torture/Outcome.h"

namespace larkspan::torture {

// That have been started. At least one: a listing has no supervisor that would count them.
int CountWorkers(const Lines& log);

inline constexpr int kAnyNumber = 1 << 20;

class RunCheck {
 public:
  // With the log of a run without a fault.
  explicit RunCheck(const Lines& cleanLog);

  // Adds what is wrong to the findings. So many calls have failed, or kAnyNumber; each can have any
  // of the expected lines once, and leave open what it was to release, beside what that belongs to.
  void Run(const Outcome& run, const Expectation& expectation, int failures, Lines& findings);

 private:
  using Counts = std::map<std::string, int>;

  void CheckLog(const Lines& log, const Expectation& expectation, int failures, Lines& findings);
  bool IsUsual(const std::string& line) const;
  void CheckExpected(const Lines& log, const Expectation& expectation, int failures,
                     Lines& findings) const;
  void CheckSupervisor(const Outcome& run, const Expectation& expectation, Lines& findings) const;
  void CheckCounts(const Counts& counts, int workers, Lines& findings) const;

  const Lines cleanLog_;
  DocumentedMessages documented_;
  Counts usual_;  // How often each line comes, without the words of a status.
  bool isSupervised_ = false;
  const int usualWorkers_;
};

}  // namespace larkspan::torture
