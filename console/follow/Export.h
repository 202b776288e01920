// One export from its folder to its outcome.
#pragma once

#include "console/ExitCode.h"
#include "console/follow/ExportRequest.h"
#include "console/follow/ExportSurroundings.h"

namespace larkspan::console {

ExitCode RunExport(const ExportRequest& request, const ExportSurroundings& surroundings);

}  // namespace larkspan::console
