// One export that several workers share: one lists the notes, and several at once export slices of
// the list, each into a part of the folder. At the end the parts are joined, and the folder is that
// of a run of one worker alone.
#pragma once

#include "console/follow/ExportWork.h"
#include "console/follow/RunFollower.h"

namespace larkspan::console {

// Runs it, or goes on with one that was cut off, as work.resumption says. Where it ends early, the
// parts up to the place at which it ended are joined; those behind stay, and are not exported again
// when the run is taken up. False, and the folder is as before, when the notes cannot be shared: a
// list that begins with the first of all IDs has none before it, behind which a worker could begin.
bool RunShared(ExportWork& work, RunFollower& follower, bool views);

}  // namespace larkspan::console
