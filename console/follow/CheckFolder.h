// The account at the end of an export: every note, from what the disk holds.
#pragma once

#include "console/follow/ExportWork.h"
#include "console/follow/RunFollower.h"

namespace larkspan::console {

// Puts the account into the outcome, or the reason why there is none among the facts, and tells the
// losses that nobody has told yet. A stop breaks it off.
void CheckFolder(ExportWork& work, RunFollower& follower);

}  // namespace larkspan::console
