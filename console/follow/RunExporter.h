// The exporter's part of an export: it is run and followed, once, or once more without views.
#pragma once

#include "console/follow/ExportWork.h"
#include "console/follow/RunFollower.h"

namespace larkspan::console {

// Returns when nothing of it is at work any more. Views that it lost are told and kept.
void RunExporter(ExportWork& work, RunFollower& follower);

}  // namespace larkspan::console
