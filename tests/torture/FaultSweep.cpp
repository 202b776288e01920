#include "tests/torture/FaultSweep.h"

#include <algorithm>
#include <climits>

#include "tests/torture/Check.h"
#include "tests/torture/Expectation.h"
#include "tests/torture/FaultCase.h"
#include "tests/torture/RunCheck.h"

namespace larkspan::torture {

namespace {

const Expectation kNothingSpecial{};

int CountViews(const std::vector<ReferenceNote>& notes) {
  constexpr std::uint16_t kView = 0x0008;
  return static_cast<int>(std::count_if(notes.begin(), notes.end(), [](const ReferenceNote& note) {
    return note.noteClass == kView;
  }));
}

class FaultSweep {
 public:
  FaultSweep(const Subject& subject, Report& report)
      : stage_(subject),
        report_(report),
        clean_(stage_.Export(kNoFaults)),
        runCheck_(clean_.log),
        reference_(MakeReference(stage_)) {}

  void Run(const Options& options) {
    CheckCleanRun();
    std::vector<FaultCase> cases = FaultCases(clean_.calls);
    const std::size_t all = cases.size();
    Choose(options, cases, report_);
    for (const FaultCase& fault : cases) RunCase(fault);
    report_.PrintFigures(stage_.subject().name, FiguresOf(clean_.calls, all));
  }

 private:
  void CheckCleanRun() {
    report_.Begin(stage_.subject().name + ": no call fails");
    Lines findings;
    runCheck_.Run(clean_, kNothingSpecial, 0, findings);
    Excuses none;
    CheckExport(MakeCheck(reference_, clean_, none, findings));
    report_.End(findings);
  }

  void RunCase(const FaultCase& fault) {
    report_.Begin(stage_.subject().name + ": " + Describe(fault));
    const Expectation expectation = ExpectationFor(fault);
    const Outcome run = stage_.Export(PlanOf(fault));
    const int failures = CountFailures(fault, run);
    Lines findings;
    runCheck_.Run(run, expectation, failures, findings);
    Excuses excuses(expectation, failures);
    Check check = MakeCheck(ReferenceFor(fault), run, excuses, findings);
    check.status = fault.status;
    check.endedEarly = HasErrorLine(run.log);
    check.mayLeaveHalf = check.endedEarly && stage_.LeavesTheEarlierHalf(run.tree);
    CheckExport(check);
    report_.End(findings, run.log);
  }

  // The list of the views is scanned first, and then no other list costs a view.
  Expectation ExpectationFor(const FaultCase& fault) const {
    Expectation expectation = ExpectationOf(fault.entry);
    const int views = CountViews(reference_.notes);
    if (fault.entry == "IDScan" && fault.call > views + 1) expectation.silently &= ~kViewsDiffer;
    return expectation;
  }

  // Where no runtime came about, it is that call which failed in each worker.
  static int CountFailures(const FaultCase& fault, const Outcome& run) {
    if (!fault.andAllLater) return 1;
    const auto calls = run.calls.find(fault.entry);
    if (calls == run.calls.end()) return CountWorkers(run.log);
    return std::max(1, calls->second - fault.call + 1);
  }

  Check MakeCheck(const Reference& reference, const Outcome& run, Excuses& excuses,
                  Lines& findings) const {
    return {.subject = stage_.subject(),
            .reference = reference,
            .clean = clean_,
            .run = run,
            .excuses = excuses,
            .findings = findings};
  }

  // A setting that was refused shows in the files of this worker, and the log tells of it.
  const Reference& ReferenceFor(const FaultCase& fault) {
    if (fault.entry != "DXLSetExporterProperty") return reference_;
    const int last = fault.andAllLater ? INT_MAX : fault.call;
    const Reference refused = MakeReference(stage_, {fault.call, last});
    const std::uint32_t resumeAt = stage_.subject().resumeAt;
    refusedReference_ = reference_;
    if (resumeAt == 0) refusedReference_.acl = refused.acl;
    for (std::size_t i = 0; i < refused.notes.size(); ++i) {
      if (refused.notes[i].id <= resumeAt) continue;
      refusedReference_.notes[i].texts = refused.notes[i].texts;
    }
    return refusedReference_;
  }

  ExportStage stage_;
  Report& report_;
  const Outcome clean_;
  RunCheck runCheck_;
  const Reference reference_;
  Reference refusedReference_;
};

}  // namespace

void SweepFaults(const Options& options, Report& report) {
  for (const Subject& subject : WantedSubjects(options)) FaultSweep(subject, report).Run(options);
}

}  // namespace larkspan::torture
