// What an export that was ended from outside, and then taken up again, has to leave behind. The
// files are looked at with code of the test's own. Each finding is a sentence; none when all is in
// order.
#pragma once

#include "tests/torture/kill/CleanRun.h"

namespace larkspan::torture {

// Every file under a final name is that of the clean run, byte for byte.
Lines CheckFinalFiles(const CleanRun& clean, const OutputTree& tree);

// Whether the last worker says in the audit report that it came to the end of its list.
bool IsFinished(const OutputTree& tree);

// The tree of a run in which each worker went on where the one before had ended. The notes at which
// a worker ended may be missing, or one of their files; others may be so only when the run is not
// finished, and then from one note on all.
Lines CheckResumed(const CleanRun& clean, const OutputTree& tree, const NoteIds& lost);

// How often the log tells that a worker ended outside a note, or could not be made.
std::size_t CountEndsOutsideANote(const OutputTree& tree);

// The log of a run that its supervisor ended, or of a worker alone: it tells of those notes, and,
// when the run is not finished, that a worker ended outside a note or could not be made. But for
// that, and for numbers of the report that do not agree, it has no warning and no error.
Lines CheckLog(const OutputTree& tree, const NoteIds& lost);

// The tree of a new run in a folder in which an earlier run left that other tree.
Lines CheckNewRun(const CleanRun& clean, const OutputTree& before, const OutputTree& tree);

}  // namespace larkspan::torture
