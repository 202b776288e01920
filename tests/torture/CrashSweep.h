// Exports by the real program, whose worker dies in a call of the library.
#pragma once

#include "tests/torture/Options.h"
#include "tests/torture/Report.h"

namespace larkspan::torture {

// Runs the cases and prints them as they fail, and the figures of each subject. Every call that an
// undisturbed run makes is struck.
void SweepCrashes(const Options& options, Report& report);

}  // namespace larkspan::torture
