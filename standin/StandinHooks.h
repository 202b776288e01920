// Extra entry points for tests that load the library into their own process. No program needs them;
// the real library has none of them. They may be called before, while and after the runtime runs,
// from the thread that uses the library.
#pragma once

#include <cstdint>

#include "notes/NotesApi.h"

extern "C" {

// Ends a runtime that is still running, whatever is open, without a ledger line. Afterwards the
// library is as freshly loaded.
LARKSPAN_NOTES_ENTRY void LARKSPAN_NOTES_CALL StandinReset();

// The ledger as JSON text: that of the running runtime, or of the one that ended last. The text
// stays good until the next call of this function.
LARKSPAN_NOTES_ENTRY const char* LARKSPAN_NOTES_CALL StandinLedgerJson();

// Replaces the fault plan of the running runtime by an array of faults in JSON, and counts calls
// for it from now on. A strict failure when the text is no plan.
LARKSPAN_NOTES_ENTRY void LARKSPAN_NOTES_CALL StandinSetFaults(const char* plan);

// All open handles and locks together.
LARKSPAN_NOTES_ENTRY std::uint32_t LARKSPAN_NOTES_CALL StandinOpenCount();

}  // extern "C"
