// Every operation on the program's own files fails, once and from then on.
#pragma once

#include "tests/torture/Options.h"
#include "tests/torture/Report.h"

namespace larkspan::torture {

void SweepFiles(const Options& options, Report& report);

}  // namespace larkspan::torture
