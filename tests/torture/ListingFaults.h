// Every call fails: one listing with a failing call of the library after another, in this process.
#pragma once

#include "tests/torture/Options.h"
#include "tests/torture/Report.h"

namespace larkspan::torture {

// Runs the cases and prints them as they fail, and the figures of each listing.
void SweepListingFaults(const Options& options, Report& report);

}  // namespace larkspan::torture
