// Records of an export with a value in every place.
#pragma once

#include "console/account/Outcome.h"

namespace larkspan::console {

// One that runs, and has nothing that comes later.
Outcome RunningOutcome();

// One that ended, stopped, taken up again, with losses of each kind.
Outcome EndedOutcome();

}  // namespace larkspan::console
