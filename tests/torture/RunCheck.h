// What every run is held to: its log holds documented lines only, those that its fault explains
// and those that the database brings along, and nothing is left open in the library.
#pragma once

#include <set>
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
  void CheckLog(const Lines& log, const Expectation& expectation, Lines& findings);
  bool IsUsual(const std::string& line) const;

  DocumentedMessages documented_;
  std::set<std::string> cleanLines_;
};

}  // namespace larkspan::torture
