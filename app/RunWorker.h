// The export worker: a process of its own, since the Notes library can crash on damaged notes.
#pragma once

#include <cstdint>

namespace larkspan {

// Starts the Notes runtime, switches to the ID file of the settings, exports after the resume note
// ID and ends the runtime. No fault dialog is shown from here on, so that a crash ends the process
// at once. When the runtime cannot start, the marker file names the resume note ID, so that the
// supervisor tries the same again. Lets no exception out.
void RunWorker(std::uint32_t resumeNoteId);

// Tells of the exception that ended a worker, and ends the runtime. RunWorker does so with those
// that it can catch; with the others, whoever hears of them. Any thread, while no other one goes
// on.
void EndWorkerAfterException();

}  // namespace larkspan
