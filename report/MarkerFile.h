// The marker file in the output folder tells the supervisor at which note a worker was when it
// ended: one note ID as eight upper-case hexadecimal digits and a line end. It exists while one
// note is being handled, and after a start of the Notes runtime that failed, until the supervisor
// has read it. Who works for another run than this process's own names that run's log.
#pragma once

#include <cstdint>

#include "report/RunLog.h"

namespace larkspan {

// Replaces the file's content with the note ID. A failed attempt is repeated 29 times, a second
// apart; when the last one failed too, false, with an ERROR line in the run log, and what can be
// deleted of a marker file is.
bool WriteMarkerFile(std::uint32_t noteId, const RunLog& log = ProcessRunLog());

// The note ID in the file, or kNoNoteId when there is no file or it does not begin with a
// hexadecimal number. A file that is there and cannot be opened is tried up to five times, a second
// apart, before it counts as none.
std::uint32_t ReadMarkerFile(const RunLog& log = ProcessRunLog());

// Whether there is one, whatever it holds.
bool HasMarkerFile(const RunLog& log = ProcessRunLog());

// Deletes the file in one attempt, for where the next write mends what fails; a missing file is no
// error, and nothing is reported.
void DeleteMarkerFile(const RunLog& log = ProcessRunLog());

// Deletes the file where no write follows: another program that holds it for a moment would let a
// finished note pass for a lost one. Up to five attempts, a second apart; none for a missing file.
// Nothing is reported.
void DeleteLastMarkerFile(const RunLog& log = ProcessRunLog());

}  // namespace larkspan
