// One export from its folder to its outcome.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "console/ExitCode.h"
#include "console/follow/ExportRequest.h"
#include "console/follow/LineSource.h"
#include "console/follow/StopRequests.h"
#include "console/show/RunDisplay.h"

namespace larkspan::console {

struct ExportSurroundings {
  RunDisplay& display;
  StopRequests& stops;
  std::optional<LineSource>& input;  // Read only when something is expected there.
  std::vector<std::string> command;  // The arguments as given, for outcome.json.
  const std::wstring& password;      // Wiped by the caller.
};

ExitCode RunExport(const ExportRequest& request, const ExportSurroundings& surroundings);

}  // namespace larkspan::console
