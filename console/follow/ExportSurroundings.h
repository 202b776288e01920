// What one export is shown on, stopped by and fed from.
#pragma once

#include <optional>
#include <string>
#include <vector>

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

}  // namespace larkspan::console
