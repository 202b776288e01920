// The torture of exports and listings. Usage:
//
//   larkspan_torture faults|crashes|files [--samples] [--sample=N] [--seed=N]
//                    [--shard=I/N] [--subject=NAME] [--only=TEXT] [--trace]
//
// Prints each run whose outcome is not in order, and figures; exit code 1 when there was one, or
// when no subject has that name or no case that text.
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>

#include "tests/torture/CrashSweep.h"
#include "tests/torture/FaultSweep.h"
#include "tests/torture/FileSweep.h"
#include "tests/torture/ListingCrashes.h"
#include "tests/torture/ListingFaults.h"
#include "tests/torture/ListingFiles.h"

namespace larkspan::torture {
namespace {

bool Sweep(const std::string& sweep, const Options& options) {
  Report report(sweep, options.trace);
  report.Print(sweep + ": seed " + std::to_string(options.seed));
  if (sweep == "faults") {
    SweepFaults(options, report);
    if (!options.samples) SweepListingFaults(options, report);
  } else if (sweep == "crashes") {
    SweepCrashes(options, report);
    if (!options.samples) SweepListingCrashes(options, report);
  } else if (sweep == "files") {
    SweepFiles(options, report);
    if (!options.samples) SweepListingFiles(options, report);
  } else {
    throw std::invalid_argument("unknown sweep " + sweep);
  }
  if (!report.HasRun()) throw std::invalid_argument("no subject " + options.subject);
  if (!report.IsAnyWanted()) throw std::invalid_argument("no case has " + options.only);
  return !report.HasFindings();
}

}  // namespace
}  // namespace larkspan::torture

int main(int argc, char** argv) {
  try {
    larkspan::torture::Options options;
    for (int i = 2; i < argc; ++i) larkspan::torture::ReadOption(argv[i], options);
    return larkspan::torture::Sweep(argc > 1 ? argv[1] : "", options) ? 0 : 1;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "larkspan_torture: %s\n", error.what());
    return 1;
  }
}
