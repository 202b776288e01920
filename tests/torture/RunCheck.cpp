#include "tests/torture/RunCheck.h"

#include <algorithm>

#include "tests/support/LogMessages.h"
#include "tests/torture/SupervisorTraces.h"

namespace larkspan::torture {

namespace {

bool IsTrace(const std::string& line) { return line.starts_with("#DEBUG#"); }

// A line without the words that a status has, in parentheses or, of a view's index, in quotes.
std::string Kind(const std::string& line) {
  return line.substr(0, std::min(line.find(" ("), line.find(" '")));
}

bool IsExpected(const std::string& line, const Expectation& expectation) {
  return std::any_of(
      expectation.complaints.begin(), expectation.complaints.end(),
      [&](std::string_view complaint) { return MessageOf(line).starts_with(complaint); });
}

void CheckLeftOpen(const Outcome& run, const Expectation& expectation, int failures,
                   Lines& findings) {
  for (const auto& [kind, count] : run.leftOpen) {
    const auto& allowed = expectation.leftOpen;
    const auto place = std::find(allowed.begin(), allowed.end(), kind);
    const bool isItself = place == allowed.begin();
    if (place != allowed.end() && (!isItself || count <= failures)) continue;
    findings.push_back("left open: " + std::to_string(count) + " of " + kind);
  }
}

}  // namespace

int CountWorkers(const Lines& log) {
  return std::max(1, CountMessages(log, message::kWorkerBegins));
}

RunCheck::RunCheck(const Lines& cleanLog)
    : cleanLog_(cleanLog), usualWorkers_(CountWorkers(cleanLog)) {
  for (const std::string& line : cleanLog) {
    if (!IsSupervisorTrace(line)) ++usual_[Kind(line)];
    isSupervised_ = isSupervised_ || IsSupervisorTrace(line);
  }
}

void RunCheck::Run(const Outcome& run, const Expectation& expectation, int failures,
                   Lines& findings) {
  CheckLog(run.log, expectation, failures, findings);
  CheckSupervisor(run, expectation, findings);
  CheckLeftOpen(run, expectation, failures, findings);
}

void RunCheck::CheckLog(const Lines& log, const Expectation& expectation, int failures,
                        Lines& findings) {
  bool isTold = false;
  Counts unexplained;
  for (const std::string& line : log) {
    if (!documented_.Contains(line)) findings.push_back("undocumented: " + line);
    const bool isExpected = IsExpected(line, expectation);
    isTold = isTold || (isExpected && !IsUsual(line));
    // The sum at the end is counted elsewhere.
    const bool isSum = MessageOf(line).starts_with(message::kCountMismatch);
    if (!isExpected && !isSum && !IsSupervisorTrace(line)) ++unexplained[Kind(line)];
  }
  if (expectation.tells == Tells::kAlways && !isTold) findings.push_back("no line tells of it");
  CheckExpected(log, expectation, failures, findings);
  CheckCounts(unexplained, CountWorkers(log), findings);
}

bool RunCheck::IsUsual(const std::string& line) const {
  return std::find(cleanLog_.begin(), cleanLog_.end(), line) != cleanLog_.end();
}

// Without a fault some of these lines come as well, since the database has damage of its own.
void RunCheck::CheckExpected(const Lines& log, const Expectation& expectation, int failures,
                             Lines& findings) const {
  for (const std::string_view complaint : expectation.complaints) {
    const std::string beginning(complaint);
    const int count = CountMessages(log, beginning);
    if (count > CountMessages(cleanLog_, beginning) + failures) {
      findings.push_back("too often, " + std::to_string(count) + " times: " + beginning);
    }
  }
}

// The list that was not found was none, unless it could not be opened; one that is there is read.
void RunCheck::CheckSupervisor(const Outcome& run, const Expectation& expectation,
                               Lines& findings) const {
  const bool isSupervised = std::any_of(run.log.begin(), run.log.end(),
                                        [](const auto& line) { return IsSupervisorTrace(line); });
  if (isSupervised != isSupervised_ || (isSupervised && !AreOfOneRun(run.log))) {
    findings.push_back("the traces of the supervisor are not those of a run");
  }
  const bool isFound = run.tree.contains("idtable.txt");
  for (const char* const message : {kListNotFound, kListCutShort}) {
    const bool isExplained = IsExpected(std::string("#DEBUG# - ") + message, expectation);
    if (isFound && !isExplained && CountMessages(run.log, message) != 0) {
      findings.push_back(std::string("the list is there: ") + message);
    }
  }
}

// Each worker leaves its traces; damage that the database brings along is told once, by whichever
// worker meets it.
void RunCheck::CheckCounts(const Counts& counts, int workers, Lines& findings) const {
  for (const auto& [line, count] : counts) {
    const auto usual = usual_.find(line);
    int most = usual == usual_.end() ? 0 : usual->second;
    if (IsTrace(line)) most = (most * workers + usualWorkers_ - 1) / usualWorkers_;
    if (count > most) findings.push_back("strange, " + std::to_string(count) + " times: " + line);
  }
}

}  // namespace larkspan::torture
