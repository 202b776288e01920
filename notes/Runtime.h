// Start and end of the Notes runtime in this process. Main thread, but for the end after a crash.
#pragma once

#include "notes/Status.h"

namespace larkspan {

// Starts the runtime with the program's path and the last command-line argument that begins with
// "=", each cut to 259 bytes of the system's ANSI code page; a success sets the started flag.
Status StartNotesRuntime();

// Clears the started flag and, when it was set, ends the runtime, with a DEBUG line before and
// after.
void EndNotesRuntime();

}  // namespace larkspan
