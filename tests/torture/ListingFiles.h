// Every operation on the files of a listing fails, once and from then on.
#pragma once

#include "tests/torture/Options.h"
#include "tests/torture/Report.h"

namespace larkspan::torture {

void SweepListingFiles(const Options& options, Report& report);

}  // namespace larkspan::torture
