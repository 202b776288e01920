// Which of its roles this process plays.
#pragma once

#include "app/CommandLine.h"

namespace larkspan {

enum class Role { kRefused, kVersion, kScan, kServers, kSupervisor, kWorker };

// Chooses the role; the order of the tests is fixed: version, scan, servers, then an export, which
// needs a database path and an output folder that exists. Only an export looks at the folder.
Role ChooseRole(const ParsedCommandLine& line);

}  // namespace larkspan
