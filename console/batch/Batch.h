// Exports every database of a list into a folder of its own, some at once.
#pragma once

#include <string>
#include <vector>

#include "console/ExitCode.h"
#include "console/batch/BatchDisplay.h"
#include "console/batch/BatchList.h"
#include "console/batch/Schedule.h"
#include "console/follow/ExportRequest.h"
#include "console/follow/StopRequests.h"

namespace larkspan::console {

struct BatchRequest {
  std::string listFile;
  std::string root;
  ScheduleLimits limits;
  ExportRequest wanted;                    // Of each export, without its database and folder.
  std::vector<std::string> exportOptions;  // The same as arguments.
  bool stopOnStdinEnd = false;
};

struct BatchSurroundings {
  BatchDisplay& display;
  StopRequests& stops;
  const std::wstring& password;  // Wiped by the caller.
};

// The code is the worst of all: of 4, 5, 2, 3 and 0 the first.
ExitCode RunBatch(const BatchRequest& request, const BatchSurroundings& surroundings);

}  // namespace larkspan::console
