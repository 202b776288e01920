// Start and end of the Notes runtime in this process. Main thread, but for the end after a crash.
#pragma once

#include <string>
#include <vector>

#include "notes/Status.h"

namespace larkspan {

// Starts the runtime with the program's path and the last of the command-line arguments that begin
// with "=", each cut to 259 bytes of the system's ANSI code page; a success sets the started flag.
// The filter for faults that nobody handles is afterwards that which it was before.
Status StartNotesRuntime(const std::wstring& programPath,
                         const std::vector<std::wstring>& runtimeArguments);

// Clears the started flag and, when it was set, ends the runtime, with a DEBUG line before and
// after.
void EndNotesRuntime();

// Whether the end of the runtime that was started last has begun. Any thread.
bool IsNotesRuntimeEnding();

// The WARNING line for an exception out of that end.
void LogExceptionOfTheEnd();

}  // namespace larkspan
