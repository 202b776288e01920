#include "tests/torture/RunCheck.h"

#include <algorithm>

#include "tests/support/LogMessages.h"

namespace larkspan::torture {

namespace {

// A line without the words that a status has.
std::string WithoutStatusText(const std::string& line) { return line.substr(0, line.find(" (")); }

bool IsExpected(const std::string& line, const Expectation& expectation) {
  return std::any_of(
      expectation.complaints.begin(), expectation.complaints.end(),
      [&](std::string_view complaint) { return MessageOf(line).starts_with(complaint); });
}

void CheckLeftOpen(const Outcome& run, const Expectation& expectation, Lines& findings) {
  for (const auto& [kind, count] : run.leftOpen) {
    const auto& allowed = expectation.leftOpen;
    if (std::find(allowed.begin(), allowed.end(), kind) != allowed.end()) continue;
    findings.push_back("left open: " + std::to_string(count) + " of " + kind);
  }
}

}  // namespace

RunCheck::RunCheck(const Lines& cleanLog) {
  for (const std::string& line : cleanLog) cleanLines_.insert(WithoutStatusText(line));
}

void RunCheck::Run(const Outcome& run, const Expectation& expectation, Lines& findings) {
  CheckLog(run.log, expectation, findings);
  CheckLeftOpen(run, expectation, findings);
}

void RunCheck::CheckLog(const Lines& log, const Expectation& expectation, Lines& findings) {
  bool isTold = false;
  for (const std::string& line : log) {
    if (!documented_.Contains(line)) findings.push_back("undocumented: " + line);
    const bool isExpected = IsExpected(line, expectation);
    isTold = isTold || isExpected;
    const bool isTrace = line.starts_with("#DEBUG#");
    if (!isExpected && !isTrace && !IsUsual(line)) findings.push_back("strange: " + line);
  }
  if (expectation.tells == Tells::kAlways && !isTold) findings.push_back("no line tells of it");
}

// Damage that the database brings along, and the sum at the end, which is counted elsewhere.
bool RunCheck::IsUsual(const std::string& line) const {
  return cleanLines_.contains(WithoutStatusText(line)) ||
         MessageOf(line).starts_with(message::kCountMismatch);
}

}  // namespace larkspan::torture
