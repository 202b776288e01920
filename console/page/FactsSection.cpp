// What was exported, when, and by whom: from the audit report, and from the export's own record
// where there is one.
#include <charconv>

#include "console/bag/BagText.h"
#include "console/page/Html.h"
#include "console/page/Sections.h"
#include "console/text/Sizes.h"
#include "console/text/Times.h"
#include "console/text/Utf.h"

namespace larkspan::console {

namespace {

std::string Fact(const std::string& name, const std::string& value) {
  if (value.empty()) return {};
  return "<dt>" + name + "</dt><dd dir=\"auto\">" + Html(value) + "</dd>\n";
}

std::string FirstOf(const std::string& one, const std::string& other) {
  return one.empty() ? other : one;
}

// The audit report has seconds with two decimals that are always zero.
std::string RuntimeText(const std::string& seconds) {
  std::uint64_t number = 0;
  const auto [behind, error] =
      std::from_chars(seconds.data(), seconds.data() + seconds.size(), number);
  return error == std::errc() ? DurationText(number) : seconds;
}

std::string DurationOf(const PageContent& content) {
  const Outcome& outcome = content.outcome;
  if (const auto seconds = SecondsBetween(outcome.started, outcome.ended))
    return DurationText(*seconds);
  return RuntimeText(content.account.audit.runtimeSeconds);
}

std::string SizeOf(const std::optional<std::uint64_t>& bytes) {
  return bytes ? BytesText(*bytes) : "";
}

std::string DatabaseFactsHtml(const PageContent& content) {
  const AuditBlock& audit = content.account.audit;
  return Fact("Database", PathOf(content)) + Fact("Server", ServerOf(content)) +
         Fact("Replica ID", content.database.replicaId) +
         Fact("Form", content.account.archive ? "archive" : "plain export of design notes") +
         Fact("Size of the database", SizeOf(audit.sizeBefore)) +
         Fact("Sealed", content.bag ? BagVerdictText(*content.bag) : "");
}

std::string ByWhom(const Outcome& outcome) {
  if (outcome.user.empty() || outcome.host.empty()) return outcome.user + outcome.host;
  return outcome.user + " on " + outcome.host;
}

std::string CodeWords(ExitCode code) {
  switch (code) {
    case ExitCode::kWhole:
      return "whole";
    case ExitCode::kUsage:
      return "the command line was refused";
    case ExitCode::kCouldNotRun:
      return "could not run";
    case ExitCode::kLosses:
      return "done, with losses";
    case ExitCode::kStopped:
      return "stopped by the user";
    case ExitCode::kIncomplete:
      return "incomplete or not accounted for";
  }
  return "";
}

// How the export ended, in its own words. Without its record only the audit report can tell.
std::string EndOf(const PageContent& content) {
  const Outcome& outcome = content.outcome;
  switch (content.outcomeReading) {
    case OutcomeReading::kUnreadable:
      return "not known: outcome.json cannot be read";
    case OutcomeReading::kMissing:
      return content.account.audit.cameToItsEnd ? "came to the end of its list"
                                                : "did not come to the end of its list";
    case OutcomeReading::kRead:
      break;
  }
  if (outcome.state == Outcome::State::kRunning)
    return "not told: it ran at " + TimeText(outcome.updated) + ", and goes on or was cut off";
  if (!outcome.exitCode) return "ended";
  const std::string words = "exit code " + std::to_string(static_cast<int>(*outcome.exitCode)) +
                            ", " + CodeWords(*outcome.exitCode);
  return outcome.reason.empty() ? words : words + ": " + outcome.reason;
}

std::string RestartsOf(const Outcome& outcome) {
  if (outcome.restarts.empty()) return {};
  std::string text = CountText(outcome.restarts.size(), "restart", "restarts");
  const Restart& last = outcome.restarts.back();
  text += ", the last after a " + last.cause;
  return last.note ? text + " at note " + NoteIdText(*last.note) : text;
}

std::string StopOf(const Outcome& outcome) {
  return outcome.stop ? "asked for by " + outcome.stop->by + " at " + TimeText(outcome.stop->time)
                      : "";
}

std::string VersionsOf(const Outcome& outcome) {
  if (outcome.larkspanVersion.empty()) return {};
  return "larkspan " + outcome.larkspanVersion + ", larkspan-console " + outcome.consoleVersion;
}

std::string RunFacts(const PageContent& content) {
  const AuditBlock& audit = content.account.audit;
  const Outcome& outcome = content.outcome;
  return Fact("Started", TimeText(FirstOf(outcome.started, audit.started))) +
         Fact("Ended", TimeText(FirstOf(outcome.ended, audit.ended))) +
         Fact("Duration", DurationOf(content)) + Fact("Notes user", audit.user) +
         Fact("Full access", audit.fullAccess ? "yes" : "no") + Fact("Run by", ByWhom(outcome)) +
         Fact("End", EndOf(content)) + Fact("Went on", RestartsOf(outcome)) +
         Fact("Stop", StopOf(outcome)) + Fact("Made with", VersionsOf(outcome));
}

}  // namespace

std::string FactsSection(const PageContent& content) {
  return "<div class=\"columns\">\n<section aria-labelledby=\"export\">\n"
         "<h2 id=\"export\">The export</h2>\n<dl class=\"facts\">\n" +
         DatabaseFactsHtml(content) + RunFacts(content) + "</dl>\n</section>\n" +
         FoldersSection(content.account) + "</div>\n";
}

}  // namespace larkspan::console
