// The marker file in the output folder tells the supervisor at which note a worker was when it
// ended: one note ID as eight upper-case hexadecimal digits and a line end. It exists only while
// one note is being handled.
#pragma once

#include <cstdint>

namespace larkspan {

// Replaces the file's content with the note ID. A failed attempt is repeated 29 times, a second
// apart; false, with an ERROR line in the run log and no marker file left, when the last one failed
// too.
bool WriteMarkerFile(std::uint32_t noteId);

// The note ID in the file, or kNoNoteId when there is no file or it does not begin with a
// hexadecimal number.
std::uint32_t ReadMarkerFile();

// Whether there is one, whatever it holds.
bool HasMarkerFile();

// Deletes the file; a missing file is no error.
void DeleteMarkerFile();

}  // namespace larkspan
