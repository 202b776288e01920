// Every moment is the last: listings by the real program, which dies in a call of the library.
#pragma once

#include "tests/torture/Options.h"
#include "tests/torture/Report.h"

namespace larkspan::torture {

// Runs the cases and prints them as they fail, and the figures of each listing. The calls are
// struck as those of exports. Each entry point also fails once with a status, which the exit code
// does not tell.
void SweepListingCrashes(const Options& options, Report& report);

}  // namespace larkspan::torture
