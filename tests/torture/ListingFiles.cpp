// What is in the listing's file is the beginning of the listing, and an ERROR line tells when it is
// not all of it. Only on a full disk, which takes the log as well, nothing can tell.
#include "tests/torture/ListingFiles.h"

#include "tests/torture/FileCase.h"
#include "tests/torture/FileExpectation.h"
#include "tests/torture/FileLines.h"
#include "tests/torture/FileRun.h"
#include "tests/torture/Listing.h"
#include "tests/torture/RunCheck.h"

namespace larkspan::torture {

namespace {

// Every operation on the listing's file is one without which it is not whole.
const Expectation kTold{
    .entry = "",
    .tells = Tells::kAlways,
    .complaints = {"Unable to open output file", "Unable to write output file"}};

class ListingFileSweep {
 public:
  ListingFileSweep(const Listing& listing, Report& report)
      : stage_(listing),
        report_(report),
        clean_(RecordOperations([this] { return List(); }, operations_)),
        runCheck_(clean_.log) {}

  void Run(const Options& options) {
    ForEachFileCase(stage_.listing().name, operations_, options, report_,
                    [this](const FileCase& fault) { RunCase(fault); });
  }

 private:
  Outcome List() { return stage_.List(kNoFaults); }

  void RunCase(const FileCase& fault) {
    report_.Begin(stage_.listing().name + ": " + Describe(fault));
    const Outcome run = RunWithFault(fault, [this] { return List(); });
    Lines findings;
    const bool mayBeSilent = fault.file == "*" || IsReport(fault.file);
    if (!mayBeSilent) runCheck_.Run(run, kTold, fault.andAllLater ? kAnyNumber : 1, findings);
    if (IsReport(fault.file)) {
      CheckLinesOf("log.txt", fault, {operations_, clean_.log}, run.log, findings);
    }
    CheckFile(fault, run, findings);
    for (const auto& [kind, count] : run.leftOpen) findings.push_back("left open: " + kind);
    report_.End(findings, run.log);
  }

  void CheckFile(const FileCase& fault, const Outcome& run, Lines& findings) const {
    const std::string& name = stage_.listing().file;
    const std::string& whole = clean_.tree.at(name);
    const auto found = run.tree.find(name);
    const std::string content = found == run.tree.end() ? "" : found->second;
    if (!whole.starts_with(content)) findings.push_back("no beginning of it: " + content);
    if (IsReport(fault.file) && content != whole) findings.push_back("is not whole: " + content);
    if (LinesOf(run.tree, name).size() < LinesBefore(fault, operations_, name)) {
      findings.push_back("lacks lines that were written: " + content);
    }
    const bool isTorn = !content.empty() && !content.ends_with("\r\n");
    if (isTorn && fault.bytes == 0) findings.push_back("ends within a line: " + content);
    for (const auto& [other, bytes] : run.tree) {
      if (other != name && other != "log.txt") findings.push_back(other + " was left behind");
    }
  }

  ListingStage stage_;
  Report& report_;
  std::vector<std::string> operations_;  // Of the run without a fault.
  const Outcome clean_;
  RunCheck runCheck_;
};

}  // namespace

void SweepListingFiles(const Options& options, Report& report) {
  for (const Listing& listing : WantedListings(options)) {
    ListingFileSweep(listing, report).Run(options);
  }
}

}  // namespace larkspan::torture
