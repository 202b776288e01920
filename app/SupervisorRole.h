// The role of the process that the user starts: the supervisor of export workers.
#pragma once

#include <string>

namespace larkspan {

// Whether this command line with a resume note ID appended makes a worker. It does not when it ends
// inside an open quote, as in -password "x\": the suffix would belong to the last value, and the
// child would be a supervisor that starts a supervisor, without end.
bool MakesWorkers(const std::wstring& commandLine);

// Supervises an export into the output folder of the settings. commandLine is this process's own,
// exactly as it was given. False, with nothing started or written, when it does not make workers.
bool Supervise(const std::wstring& commandLine);

}  // namespace larkspan
