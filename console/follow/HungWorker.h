// Ends a worker that hangs, so that its supervisor goes on after the note.
#pragma once

#include <windows.h>

namespace larkspan::console {

// Ends the one child of the supervisor that belongs to the job and is younger than the supervisor;
// process IDs are used again, so all of that is looked at on the handle of the process that is then
// ended. False when there is none, as in the supervisor's pauses, or when it could not be ended.
bool EndWorkerOf(HANDLE supervisor, DWORD supervisorId, HANDLE job);

}  // namespace larkspan::console
