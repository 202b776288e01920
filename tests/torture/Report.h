// What the program prints, and the watch over the case that is running: it is named when it crashes
// the process or does not end.
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "tests/support/Lines.h"

namespace larkspan::torture {

class Report {
 public:
  // Standard output belongs to the program's progress lines from here on; the report goes to where
  // it went before. A case that runs for two minutes, or crashes, is named, and the process ends.
  Report(std::string sweep, bool trace);

  // Cases that the command line asks for, whichever process runs them.
  void AddWanted(std::size_t cases) { isAnyWanted_ = isAnyWanted_ || cases != 0; }
  bool IsAnyWanted() const { return isAnyWanted_; }

  void Begin(const std::string& name);
  // Prints the findings of the case, and where there are any these lines of the run's log.
  void End(Lines findings, const Lines& log = {});

  // Prints the figures of what was run since the last call: "<sweep> <subject>: ...".
  void PrintFigures(const std::string& subject, const std::string& details);

  void Print(const std::string& line);

  bool HasFindings() const { return hasFindings_; }

  // Whether any figures were printed.
  bool HasRun() const { return hasRun_; }

 private:
  const std::string sweep_;
  const bool trace_;
  std::string case_;
  int cases_ = 0;
  int failedCases_ = 0;
  bool hasFindings_ = false;
  bool hasRun_ = false;
  bool isAnyWanted_ = false;
  std::chrono::steady_clock::time_point begun_ = std::chrono::steady_clock::now();
};

}  // namespace larkspan::torture
