// The body of an export worker, entered when the Notes runtime is started and the ID switched.
#pragma once

#include <cstdint>

namespace larkspan {

// Exports the database of the settings: every listed note whose ID is greater than the resume note
// ID. The first worker of a run (resume note ID 0) does the once-per-database work before. What
// fails is told in the run log; everything opened is closed when it returns.
void RunExport(std::uint32_t resumeNoteId);

}  // namespace larkspan
