// verify --bag-only: judges any bag, whatever its payload.
#pragma once

#include <string>

#include "console/ExitCode.h"

namespace larkspan::console {

// Says what was found: one JSON object, nothing, or text. kWhole: the bag is valid, warnings
// included; kIncomplete: it is not; kCouldNotRun: there is no such folder.
ExitCode RunBagOnly(const std::string& folder, bool json, bool quiet);

}  // namespace larkspan::console
