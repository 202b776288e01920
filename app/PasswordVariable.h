// The password of the ID file in the environment: unlike a command line, nothing shows or records
// it when a process is started.
#pragma once

#include "app/CommandLine.h"

namespace larkspan {

// Takes the password from the environment variable LARKSPAN_PASSWORD where the command line gives
// an ID file and no password. An empty one is given too.
void TakePasswordVariable(ParsedCommandLine& line);

// Takes the variable out of the environment, so that nothing that the library starts inherits it.
// Not for the supervisor, whose workers need it.
void RemovePasswordVariable();

}  // namespace larkspan
