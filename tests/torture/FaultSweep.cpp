#include "tests/torture/FaultSweep.h"

#include <algorithm>
#include <climits>
#include <set>

#include "tests/torture/Check.h"
#include "tests/torture/DocumentedMessages.h"
#include "tests/torture/Expectation.h"
#include "tests/torture/FaultCase.h"

namespace larkspan::torture {

namespace {

const Expectation kNothingSpecial{};

// A line without the words that a status has.
std::string WithoutStatusText(const std::string& line) { return line.substr(0, line.find(" (")); }

class FaultSweep {
 public:
  FaultSweep(const Subject& subject, Report& report) : stage_(subject), report_(report) {
    clean_ = stage_.Export("[]");
    reference_ = MakeReference(stage_);
    cleanFiles_ = IdentifyFiles(reference_, clean_);
    for (const std::string& line : clean_.log) cleanLines_.insert(WithoutStatusText(line));
  }

  void Run(const Options& options) {
    CheckCleanRun();
    std::vector<FaultCase> cases = AllFaultCases(clean_.calls);
    const std::size_t all = cases.size();
    Choose(options, cases);
    for (const FaultCase& fault : cases) RunCase(fault);
    int calls = 0;
    for (const auto& [entry, count] : clean_.calls) calls += count;
    report_.PrintFigures(stage_.subject().name, std::to_string(clean_.calls.size()) +
                                                    " entry points, " + std::to_string(calls) +
                                                    " calls, " + std::to_string(all) + " cases");
  }

 private:
  void CheckCleanRun() {
    report_.Begin(stage_.subject().name + ": no call fails");
    Lines findings;
    CheckLeftOpen(clean_, kNothingSpecial, findings);
    CheckTree(MakeCheck(reference_, clean_, findings));
    report_.End(findings);
  }

  void RunCase(const FaultCase& fault) {
    report_.Begin(stage_.subject().name + ": " + Describe(fault));
    const Expectation& expectation = ExpectationOf(fault.entry);
    const Outcome run = stage_.Export(PlanOf(fault));
    Lines findings;
    CheckLog(run, expectation, findings);
    CheckLeftOpen(run, expectation, findings);
    Check check = MakeCheck(ReferenceFor(fault), run, findings);
    check.silently = expectation.silently;
    check.status = fault.status;
    check.endedEarly = HasErrorLine(run.log);
    check.mayLeaveHalf = check.endedEarly && stage_.subject().resumeAt != 0;
    CheckTree(check);
    if (!findings.empty()) {
      for (const std::string& line : run.log) findings.push_back(line);
    }
    report_.End(findings);
  }

  Check MakeCheck(const Reference& reference, const Outcome& run, Lines& findings) const {
    return {.subject = stage_.subject(),
            .reference = reference,
            .clean = clean_,
            .cleanFiles = cleanFiles_,
            .run = run,
            .findings = findings};
  }

  static void CheckTree(const Check& check) {
    CheckNotes(check);
    CheckFolder(check);
    CheckAudit(check);
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

  void CheckLog(const Outcome& run, const Expectation& expectation, Lines& findings) {
    bool isTold = false;
    for (const std::string& line : run.log) {
      if (!documented_.Contains(line)) findings.push_back("undocumented: " + line);
      const bool isExpected = IsExpected(line, expectation);
      isTold = isTold || isExpected;
      const bool isTrace = line.starts_with("#DEBUG#");
      if (!isExpected && !isTrace && !IsUsual(line)) findings.push_back("strange: " + line);
    }
    if (expectation.tells == Tells::kAlways && !isTold) findings.push_back("no line tells of it");
  }

  static bool IsExpected(const std::string& line, const Expectation& expectation) {
    return std::any_of(expectation.complaints.begin(), expectation.complaints.end(),
                       [&](std::string_view complaint) {
                         return line.substr(line.find(" - ") + 3).starts_with(complaint);
                       });
  }

  // Damage that the database brings along, and the sum at the end, which is counted elsewhere.
  bool IsUsual(const std::string& line) const {
    return cleanLines_.contains(WithoutStatusText(line)) ||
           line.starts_with("#WARNING# - Document count mismatch: ");
  }

  static void CheckLeftOpen(const Outcome& run, const Expectation& expectation, Lines& findings) {
    for (const auto& [kind, count] : run.leftOpen) {
      const auto& allowed = expectation.leftOpen;
      if (std::find(allowed.begin(), allowed.end(), kind) != allowed.end()) continue;
      findings.push_back("left open: " + std::to_string(count) + " of " + kind);
    }
  }

  ExportStage stage_;
  Report& report_;
  DocumentedMessages documented_;
  Outcome clean_;
  Reference reference_;
  Reference refusedReference_;
  std::map<std::uint32_t, Variant> cleanFiles_;
  std::set<std::string> cleanLines_;
};

}  // namespace

void SweepFaults(const Options& options, Report& report) {
  for (const Subject& subject : options.samples ? SampleSubjects() : SmallSubjects()) {
    FaultSweep(subject, report).Run(options);
  }
}

}  // namespace larkspan::torture
