// Exports by the real program, whose worker dies in a call of the library: in the first and the last
// of each entry point, and in one between them.
#pragma once

#include "tests/torture/Options.h"
#include "tests/torture/Report.h"

namespace larkspan::torture {

// Runs the cases and prints them as they fail, and the figures of each subject. Every entry point
// is struck at its first, its last and a random call in between.
void SweepCrashes(const Options& options, Report& report);

}  // namespace larkspan::torture
