// Three kinds of faults have three checks:
//   - An operation on one file fails. Each note and view is whole or has its line, as in the sweep
//     of the library's calls.
//   - Lines of the run log or of the audit report are lost. Nothing else may be.
//   - The disk is full from a moment on, so that the log is lost too. What was written before is
//     there, and what is there under a final name is whole.
#include "tests/torture/FileSweep.h"

#include <algorithm>

#include "tests/support/LogMessages.h"
#include "tests/torture/Check.h"
#include "tests/torture/FileCase.h"
#include "tests/torture/FileExpectation.h"
#include "tests/torture/FileLines.h"
#include "tests/torture/FileRun.h"
#include "tests/torture/FullDiskCheck.h"
#include "tests/torture/RunCheck.h"
#include "tests/torture/SupervisorTraces.h"

namespace larkspan::torture {

namespace {

class FileSweep {
 public:
  FileSweep(const Subject& subject, Report& report)
      : stage_(subject),
        report_(report),
        clean_(RecordOperations([this] { return Export(); }, operations_)),
        runCheck_(clean_.log),
        reference_(MakeReference(stage_)) {}

  void Run(const Options& options) {
    ForEachFileCase(stage_.subject().name, operations_, options, report_,
                    [this](const FileCase& fault) { RunCase(fault); });
  }

 private:
  Outcome Export() { return stage_.Export(kNoFaults); }

  void RunCase(const FileCase& fault) {
    if (IsFullBeforeTheEarlier(fault)) return;
    report_.Begin(stage_.subject().name + ": " + Describe(fault));
    const Outcome run = RunWithFault(fault, [this] { return Export(); });
    Lines findings;
    if (fault.file == "*") {
      CheckFullDisk({.operations = operations_,
                     .firstFailingWrite = fault.call,
                     .earlier = stage_.earlierWorker(),
                     .clean = clean_.tree},
                    run.tree, findings);
    } else if (IsReport(fault.file)) {
      CheckNothingElseIsLost(fault, run, findings);
    } else {
      CheckConsequences(fault, run, findings);
    }
    for (const auto& [kind, count] : run.leftOpen) findings.push_back("left open: " + kind);
    report_.End(findings, run.log);
  }

  // The earlier worker cannot have worked on a disk that was full before it: the first lines of log
  // and report are the supervisor's.
  bool IsFullBeforeTheEarlier(const FileCase& fault) const {
    std::ptrdiff_t before = 0;
    for (const char* const name : {"log.txt", "audit.txt"}) {
      const Lines earlier = LinesOf(stage_.earlierWorker(), name);
      const Lines clean = LinesOf(clean_.tree, name);
      if (earlier.empty()) continue;
      before += std::find(clean.begin(), clean.end(), earlier.front()) - clean.begin();
    }
    return fault.file == "*" && fault.call <= before;
  }

  void CheckConsequences(const FileCase& fault, const Outcome& run, Lines& findings) {
    const Expectation expectation = FileExpectationOf(fault);
    const bool isForMany = fault.andAllLater || fault.operation == "folder";
    const int failures = isForMany ? kAnyNumber : 1;
    runCheck_.Run(run, expectation, failures, findings);
    Excuses excuses(expectation, failures);
    Check check = MakeCheck(run, excuses, findings);
    check.endedEarly = HasErrorLine(run.log);
    check.mayLeaveHalf = check.endedEarly && stage_.LeavesTheEarlierHalf(run.tree);
    if (fault.operation == "delete" && fault.andAllLater) check.mayStay = fault.file;
    check.isListUnread = IsListUnread(fault, run);
    CheckExport(check);
    CheckViews(run, findings);
  }

  Check MakeCheck(const Outcome& run, Excuses& excuses, Lines& findings) const {
    return {.subject = stage_.subject(),
            .reference = reference_,
            .clean = clean_,
            .run = run,
            .excuses = excuses,
            .findings = findings};
  }

  static bool IsListUnread(const FileCase& fault, const Outcome& run) {
    const std::string line = fault.operation == "open" ? kListNotFound : kListCutShort;
    const bool keepsItUnread = fault.operation == "open" || fault.operation == "read";
    return fault.file == "idtable.txt" && keepsItUnread && CountMessages(run.log, line) != 0;
  }

  // "Unable to write C:\out\views\0000015A.xml" stands for the view. All are written before the
  // notes.
  void CheckViews(const Outcome& run, Lines& findings) const {
    const bool endedBefore = HasErrorLine(run.log) && !HasFileOfAny(reference_.notes, run);
    for (const auto& [name, content] : run.tree) {
      if (name.starts_with("views/") && !clean_.tree.contains(name)) {
        findings.push_back(name + " is strange");
      }
    }
    for (const auto& [name, content] : clean_.tree) {
      if (!name.starts_with("views/") || name == "views/") continue;
      const std::string line = "\\views\\" + name.substr(name.find('/') + 1);
      const bool isTold = std::any_of(run.log.begin(), run.log.end(), [&](const auto& logged) {
        return logged.starts_with("#WARNING# - Unable to write ") && logged.ends_with(line);
      });
      const auto file = run.tree.find(name);
      if (file != run.tree.end() && file->second != content) findings.push_back(name + " differs");
      const bool isMissing = file == run.tree.end();
      if (isMissing != isTold && !endedBefore) {
        findings.push_back(name + (isMissing ? " is missing" : " is there and has a line"));
      }
    }
  }

  void CheckNothingElseIsLost(const FileCase& fault, const Outcome& run, Lines& findings) const {
    testing::OutputTree expected = clean_.tree;
    testing::OutputTree actual = run.tree;
    for (testing::OutputTree* const tree : {&expected, &actual}) {
      tree->erase("log.txt");
      tree->erase("audit.txt");
    }
    if (expected != actual) {
      findings.push_back(testing::DescribeDifferences(expected, actual));
    }
    if (fault.file == "audit.txt") {
      CheckLinesOf("log.txt", fault, {operations_, clean_.log}, run.log, findings);
      CheckLinesOf(fault.file, fault, {operations_, clean_.audit}, run.audit, findings);
    } else {
      const Lines clean = WithoutMismatch(clean_.log);
      CheckLinesOf(fault.file, fault, {operations_, clean}, WithoutMismatch(run.log), findings);
      CheckCounts(fault, run, findings);
    }
  }

  // A failure whose line is lost is not counted. That the counts do not agree then is told, unless
  // that line is lost.
  void CheckCounts(const FileCase& fault, const Outcome& run, Lines& findings) const {
    Excuses none;
    Check check = MakeCheck(run, none, findings);
    check.isLogUnread = IsUnread(fault, operations_);
    const bool lostNoOther = WithoutMismatch(run.log) == WithoutMismatch(clean_.log);
    check.mayLackMismatch =
        CostsALine(fault.operation) && (fault.andAllLater || (lostNoOther && !check.isLogUnread));
    CheckAudit(check);
  }

  static Lines WithoutMismatch(Lines log) {
    std::erase_if(log, [](const std::string& line) {
      return MessageOf(line).starts_with(message::kCountMismatch);
    });
    return log;
  }

  ExportStage stage_;
  Report& report_;
  std::vector<std::string> operations_;  // Of the run without a fault.
  const Outcome clean_;
  RunCheck runCheck_;
  const Reference reference_;
};

}  // namespace

void SweepFiles(const Options& options, Report& report) {
  for (const Subject& subject : WantedSubjects(options)) FileSweep(subject, report).Run(options);
}

}  // namespace larkspan::torture
