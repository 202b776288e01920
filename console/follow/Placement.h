// The name of an export with --atomic: given only when all of it is accounted for, and, where that
// was asked for, confirmed.
#pragma once

#include "console/follow/ExportWork.h"
#include "console/follow/Judgement.h"

namespace larkspan::console {

// Whether an export that came to this is to get its name.
bool WantsPlacing(const ExportWork& work, const Judgement& judgement);

// Gives it the name, and what it came to then. An export that stays under the name of its attempt
// says so in its outcome.json.
Judgement Place(ExportWork& work, const Judgement& judgement);

}  // namespace larkspan::console
