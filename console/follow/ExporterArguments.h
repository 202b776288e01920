// The command line of larkspan.exe for one export.
#pragma once

#include <string>
#include <vector>

#include "console/follow/ExportRequest.h"

namespace larkspan::console {

// Without the program and the stop pipe. No password stands there.
std::vector<std::wstring> ExporterArguments(const ExportRequest& request,
                                            const std::wstring& folder, bool views);

}  // namespace larkspan::console
