// The password of the ID file, and the environment variable for it: unlike a command line, nothing
// shows or records it when a process is started.
#pragma once

#include "app/CommandLine.h"
#include "app/Role.h"

namespace larkspan {

// Leaves the password where the role needs it. A supervisor needs none: its workers get its command
// line and its environment as they are. Any other role takes it from the environment variable
// LARKSPAN_PASSWORD where the command line gives an ID file and no password, not even an empty one,
// and has the variable no more, so that nothing that the library starts inherits it.
void SettlePassword(Role role, ParsedCommandLine& line);

}  // namespace larkspan
