#include "tests/torture/ListingFaults.h"

#include "tests/torture/Expectation.h"
#include "tests/torture/FaultCase.h"
#include "tests/torture/ListingCheck.h"
#include "tests/torture/RunCheck.h"
#include "tests/torture/ServersModel.h"

namespace larkspan::torture {

namespace {

class ListingFaultSweep {
 public:
  ListingFaultSweep(const Listing& listing, Report& report)
      : stage_(listing),
        report_(report),
        clean_(stage_.List(kNoFaults)),
        runCheck_(clean_.log),
        servers_(stage_.ConfigurationArgument()) {}

  void Run(const Options& options) {
    Begin("no call fails");
    CheckRun(clean_, Expectation{}, {}, 0);
    std::vector<FaultCase> cases = FaultCases(clean_.calls);
    const std::size_t all = cases.size();
    Choose(options, cases, report_);
    for (const FaultCase& fault : cases) RunCase(fault);
    report_.PrintFigures(stage_.listing().name, FiguresOf(clean_.calls, all));
  }

 private:
  void RunCase(const FaultCase& fault) {
    const int later = fault.andAllLater ? clean_.calls.at(fault.entry) - fault.call : 0;
    Begin(Describe(fault));
    CheckRun(stage_.List(PlanOf(fault)), ListingExpectationOf(fault.entry), fault, 1 + later);
  }

  void Begin(const std::string& name) { report_.Begin(stage_.listing().name + ": " + name); }

  void CheckRun(const Outcome& run, const Expectation& expectation, const FaultCase& fault,
                int failingCalls) {
    Lines findings;
    runCheck_.Run(run, expectation, failingCalls, findings);
    CheckListing({.listing = stage_.listing(),
                  .clean = clean_,
                  .run = run,
                  .silently = expectation.silently,
                  .fault = fault,
                  .servers = servers_.ServersWith(fault),
                  .failingCalls = failingCalls,
                  .findings = findings});
    report_.End(findings, run.log);
  }

  ListingStage stage_;
  Report& report_;
  const Outcome clean_;
  RunCheck runCheck_;
  const ServersModel servers_;
};

}  // namespace

void SweepListingFaults(const Options& options, Report& report) {
  for (const Listing& listing : WantedListings(options)) {
    ListingFaultSweep(listing, report).Run(options);
  }
}

}  // namespace larkspan::torture
