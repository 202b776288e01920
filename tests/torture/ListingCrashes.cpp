// A listing has no supervisor: when the library ends the process, the lines that were written are
// there, whole, and the exit code says that it was ended.
#include "tests/torture/ListingCrashes.h"

#include "tests/support/LogMessages.h"
#include "tests/torture/Check.h"
#include "tests/torture/CrashCase.h"
#include "tests/torture/FaultCase.h"
#include "tests/torture/ListingCheck.h"
#include "tests/torture/ProcessRun.h"
#include "tests/torture/RunCheck.h"

namespace larkspan::torture {

namespace {

// Of what is called for each line; a release in its place would end the process.
const std::set<std::string> kLetsExceptionsPass = {"NSFDbInfoParse", "TimeExtractJulianDate",
                                                   "TimeExtractTicks", "OSTranslate"};

// The program hears of these deaths, and of no other.
bool IsCrash(const Death& death) {
  return death.action == "accessViolation" || death.action == "stackOverflow";
}

// An exception out of the end of the runtime costs nothing of the listing.
std::string_view ExceptionLine(const CrashCase& crash) {
  return crash.entry == "NotesTerm" ? message::kEndException : kListingException;
}

Expectation ExpectationOf(const CrashCase& crash) {
  Expectation expectation{.entry = ""};
  if (crash.death.action == "throw") expectation.complaints.push_back(ExceptionLine(crash));
  if (IsCrash(crash.death)) expectation.complaints.push_back(kListingCrash);
  return expectation;
}

class ListingCrashSweep {
 public:
  ListingCrashSweep(const Listing& listing, Report& report)
      : stage_(listing), report_(report), clean_(stage_.List(kNoFaults)), runCheck_(clean_.log) {}

  void Run(const Options& options) {
    std::vector<CrashCase> crashes = CrashCases(clean_.calls, options.seed);
    std::vector<FaultCase> faults;
    for (const auto& [entry, count] : clean_.calls) {
      faults.push_back({.entry = entry, .status = kAnyStatus});
    }
    const std::size_t all = crashes.size() + faults.size();
    Choose(options, crashes, report_);
    Choose(options, faults, report_);
    for (const CrashCase& crash : crashes) RunCrash(crash);
    for (const FaultCase& fault : faults) RunFault(fault);
    report_.PrintFigures(stage_.listing().name, FiguresOf(clean_.calls, all));
  }

 private:
  void RunCrash(const CrashCase& crash) {
    Begin(Describe(crash));
    const ProcessRun run = RunProgram(stage_.listing(), PlanOf(crash));
    Lines findings;
    CheckEnd(run, crash, findings);
    CheckListing({.listing = stage_.listing(),
                  .clean = clean_,
                  .run = run.outcome,
                  .endedEarly = true,
                  .findings = findings});
    CheckWrittenLines(run, crash, findings);
    report_.End(findings, run.outcome.log);
  }

  // An exception ends the listing in good order, or, on the way through a release, the process. A
  // thread without stack can end before it reports that; the process then ends with its code, which
  // is 0. A crash is told, and the runtime is ended, with what was open.
  void CheckEnd(const ProcessRun& run, const CrashCase& crash, Lines& findings) {
    const Death& death = crash.death;
    const bool lacksStack = death.action == "stackOverflow";
    std::set<std::uint32_t> exitCodes = death.exitCodes;
    if (lacksStack) exitCodes.insert(0);
    CheckProcess(run, exitCodes, findings);
    runCheck_.Run(run.outcome, ExpectationOf(crash), 1, findings);
    const bool endedInOrder = run.exitCode == 0U && death.action == "throw";
    const bool isTold = HasErrorLine(run.outcome.log) ||
                        CountMessages(run.outcome.log, std::string(ExceptionLine(crash))) != 0;
    if ((endedInOrder || IsCrash(death)) != isTold) {
      findings.push_back("the exit code and the log do not agree");
    }
    if (endedInOrder) {
      for (const std::string& kind : run.leftOpenByTheLast) findings.push_back(kind);
    }
  }

  // A line is on disk before the library is asked for the next.
  void CheckWrittenLines(const ProcessRun& run, const CrashCase& crash, Lines& findings) {
    const std::size_t written = LinesWrittenBefore(crash);
    const std::size_t found = LinesOf(run.outcome.tree, stage_.listing().file).size();
    if (found < written) {
      findings.push_back(std::to_string(found) + " lines of " + std::to_string(written));
    }
  }

  std::size_t LinesWrittenBefore(const CrashCase& crash) {
    const std::size_t all = LinesOf(clean_.tree, stage_.listing().file).size();
    if (crash.entry == "NotesTerm" || crash.entry == "NSFDbClose") return all;
    if (crash.entry == "NSFSearch") return LinesBeforeTheEnd(crash.afterAPart);
    if (crash.entry == "NSFLocateSummaryValue") {
      const std::size_t callsPerLine =
          static_cast<std::size_t>(clean_.calls.at(crash.entry)) / (all - 1);
      return 1 + static_cast<std::size_t>(crash.call - 1) / callsPerLine;
    }
    return kLetsExceptionsPass.contains(crash.entry) ? LinesBeforeAnException(crash) : 0;
  }

  // The listing ends in good order then, with what it had by the same call.
  std::size_t LinesBeforeAnException(CrashCase crash) {
    crash.death = {.action = "throw", .exitCodes = {}};
    return LinesOf(stage_.List(PlanOf(crash)).tree, stage_.listing().file).size();
  }

  // The program does what the listing does in this process.
  void RunFault(const FaultCase& fault) {
    Begin(Describe(fault));
    const ProcessRun run = RunProgram(stage_.listing(), PlanOf(fault));
    Lines findings;
    CheckProcess(run, {0}, findings);
    runCheck_.Run(run.outcome, ListingExpectationOf(fault.entry), 1, findings);
    if (run.outcome.tree != stage_.List(PlanOf(fault)).tree) {
      findings.push_back("the program's listing, or its log, is another one");
    }
    report_.End(findings, run.outcome.log);
  }

  static void CheckProcess(const ProcessRun& run, const std::set<std::uint32_t>& exitCodes,
                           Lines& findings) {
    if (!run.exitCode) findings.push_back("does not end");
    if (run.exitCode && !exitCodes.contains(*run.exitCode)) {
      findings.push_back("exit code " + std::to_string(*run.exitCode));
    }
    if (!run.misuse.empty()) findings.push_back("misuse: " + run.misuse);
  }

  void Begin(const std::string& name) { report_.Begin(stage_.listing().name + ": " + name); }

  ListingStage stage_;
  Report& report_;
  const Outcome clean_;
  RunCheck runCheck_;
};

}  // namespace

void SweepListingCrashes(const Options& options, Report& report) {
  for (const Listing& listing : WantedListings(options)) {
    ListingCrashSweep(listing, report).Run(options);
  }
}

}  // namespace larkspan::torture
