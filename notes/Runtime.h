// Start and end of the Notes runtime in this process. Main thread, but for the end after a crash.
#pragma once

#include "notes/Status.h"

namespace larkspan {

// Starts the runtime with the program's path and the last command-line argument that begins with
// "=", each cut to 259 bytes of the system's ANSI code page; a success sets the started flag.
Status StartNotesRuntime();

// Ends the runtime when the started flag is set, with a DEBUG line before and after, and clears
// the flag.
void EndNotesRuntime();

}  // namespace larkspan
