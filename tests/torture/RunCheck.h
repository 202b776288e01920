// What every run is held to: its log holds documented lines only, those that its fault explains
// and, as often as there, those of a run without a fault, and nothing is left open in the library.
#pragma once

#include <map>
#include <string>

#include "tests/torture/DocumentedMessages.h"
#include "tests/torture/Expectation.h"
#include "tests/torture/Outcome.h"

namespace larkspan::torture {

class RunCheck {
 public:
  // With the log of a run without a fault.
  explicit RunCheck(const Lines& cleanLog);

  // Adds what is wrong to the findings.
  void Run(const Outcome& run, const Expectation& expectation, Lines& findings);

 private:
  using Counts = std::map<std::string, int>;

  void CheckLog(const Lines& log, const Expectation& expectation, Lines& findings);
  void CheckSupervisor(const Outcome& run, const Expectation& expectation, Lines& findings) const;
  void CheckCounts(const Counts& counts, int workers, Lines& findings) const;

  DocumentedMessages documented_;
  Counts usual_;  // How often each line comes, without the words of a status.
  bool isSupervised_ = false;
  const int usualWorkers_;
};

}  // namespace larkspan::torture
