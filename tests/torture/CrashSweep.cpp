// A worker that dies at a note costs that note, which is named once, and nothing else: the next one
// goes on behind it. One that dies between two notes, or before the first, leaves no marker file,
// and the run ends there; that is told by a line of its own and, in an archive, by counts that do
// not agree. Where the subject has an earlier worker, that one dies first.
#include "tests/torture/CrashSweep.h"

#include "tests/support/LogMessages.h"
#include "tests/torture/Check.h"
#include "tests/torture/CrashCase.h"
#include "tests/torture/ExportRecord.h"
#include "tests/torture/Parts.h"
#include "tests/torture/ProcessRun.h"
#include "tests/torture/RunCheck.h"
#include "tests/torture/WorkerStories.h"

namespace larkspan::torture {

namespace {

// The worker has done its work by then, and ends in good order.
bool ThrowsAtTheEnd(const CrashCase& crash) {
  return crash.entry == "NotesTerm" && crash.death.action == "throw";
}

// How often and where each line comes is checked with the stories of the workers.
Expectation ExpectationOf(const CrashCase& crash) {
  Expectation expectation{.entry = "",
                          .complaints = {message::kIncompleteRun, message::kWorkerReturned}};
  if (ThrowsAtTheEnd(crash)) {
    expectation.complaints.push_back(message::kEndException);
  } else if (crash.death.action == "throw") {
    expectation.complaints.push_back(message::kExportException);
    expectation.complaints.push_back("Exiting via catch-all handler");
  }
  return expectation;
}

class CrashSweep {
 public:
  CrashSweep(const Subject& subject, Report& report)
      : report_(report),
        subject_(subject),
        stage_(subject),
        clean_(ExportAndRecord()),
        reference_(MakeReference(stage_)),
        cleanRun_(RunProgram(subject, kNoFaults)),
        runCheck_(cleanRun_.outcome.log) {}

  void Run(const Options& options) {
    CheckCleanRun();
    std::vector<CrashCase> cases = CrashCases(clean_.calls, options.seed);
    const std::size_t all = cases.size();
    Choose(options, cases, report_);
    for (const CrashCase& crash : cases) RunCase(crash);
    report_.PrintFigures(subject_.name, std::to_string(clean_.calls.size()) + " entry points, " +
                                            std::to_string(all) + " cases, " +
                                            std::to_string(deaths_) + " deaths");
  }

 private:
  Outcome ExportAndRecord() {
    const ExportRecord record;
    Outcome outcome = stage_.Export(kNoFaults);
    callsWithText_ = record.CallsWithText();
    return outcome;
  }

  void CheckCleanRun() {
    report_.Begin(subject_.name + ": nobody dies");
    Lines findings;
    const std::vector<WorkerStory> stories = ReadStories(cleanRun_.outcome.log, findings);
    if (!Struck(stories, findings).empty() && stories.back().died()) {
      findings.push_back("somebody died");
    }
    CheckRun(cleanRun_, Expectation{}, stories, findings);
    report_.End(findings, cleanRun_.outcome.log);
  }

  void RunCase(const CrashCase& crash) {
    report_.Begin(subject_.name + ": " + Describe(crash));
    ProcessRun run = RunProgram(subject_, PlanOf(crash));
    // The runtime that did not end has told nothing, and the one before it had died.
    if (ThrowsAtTheEnd(crash)) run.leftOpenByTheLast.clear();
    Lines findings;
    const std::vector<WorkerStory> stories = ReadStories(run.outcome.log, findings);
    CheckDeaths(crash, Struck(stories, findings), findings);
    CheckRun(run, ExpectationOf(crash), stories, findings);
    report_.End(findings, run.outcome.log);
  }

  void CheckRun(const ProcessRun& run, const Expectation& expectation,
                const std::vector<WorkerStory>& stories, Lines& findings) {
    if (!run.exitCode) findings.push_back("does not end");
    if (run.exitCode.value_or(0) != 0) {
      findings.push_back("exit code " + std::to_string(*run.exitCode));
    }
    if (!run.misuse.empty()) findings.push_back("misuse: " + run.misuse);
    runCheck_.Run(run.outcome, expectation, kAnyNumber, findings);
    const bool endedEarly = !stories.empty() && stories.back().died();
    const Lines& leftOpen = run.leftOpenByTheLast;
    if (!endedEarly) findings.insert(findings.end(), leftOpen.begin(), leftOpen.end());
    Excuses none;
    CheckExport({.subject = subject_,
                 .reference = reference_,
                 .clean = clean_,
                 .run = run.outcome,
                 .excuses = none,
                 .endedEarly = endedEarly,
                 .mayLeaveHalf = endedEarly,
                 .findings = findings});
  }

  void CheckDeaths(const CrashCase& crash, const std::vector<WorkerStory>& struck,
                   Lines& findings) {
    const bool someoneDied = !struck.empty() && struck.front().died();
    if (!someoneDied && IsReached(crash) && !ThrowsAtTheEnd(crash))
      findings.push_back("nobody died");
    for (const WorkerStory& story : struck) CheckEnd(story, crash.death, findings);
  }

  // An export that fails because of the database hands nothing over after which it could end.
  bool IsReached(const CrashCase& crash) const {
    return !crash.afterAPart || PartsOf(crash.entry) != "chunks" ||
           callsWithText_.at(crash.entry).contains(crash.call);
  }

  // The workers that have the fault plan: all but the earlier one.
  std::vector<WorkerStory> Struck(std::vector<WorkerStory> stories, Lines& findings) const {
    if (subject_.resumeAt != 0) TakeOutTheEarlier(stories, findings);
    return stories;
  }

  void TakeOutTheEarlier(std::vector<WorkerStory>& stories, Lines& findings) const {
    if (stories.empty() || stories.front().exitCode != kCrashExitCode ||
        stories.front().marker != subject_.resumeAt) {
      findings.push_back("the earlier worker did not die at its note");
    } else {
      stories.erase(stories.begin());
    }
  }

  void CheckEnd(const WorkerStory& story, const Death& death, Lines& findings) {
    if (!story.died()) return;
    ++deaths_;
    if (!death.exitCodes.contains(story.exitCode)) {
      findings.push_back("a worker's exit code is " + std::to_string(story.exitCode));
    }
  }

  Report& report_;
  const Subject subject_;
  ExportStage stage_;
  CallsByEntry callsWithText_;  // Of the run in which nobody dies.
  const Outcome clean_;
  const Reference reference_;
  const ProcessRun cleanRun_;
  RunCheck runCheck_;
  int deaths_ = 0;
};

}  // namespace

void SweepCrashes(const Options& options, Report& report) {
  for (const Subject& subject : WantedSubjects(options)) CrashSweep(subject, report).Run(options);
}

}  // namespace larkspan::torture
