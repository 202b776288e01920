// The stand-in Notes library in the process of a fuzz target.
#pragma once

namespace larkspan::fuzz {

// Starts the library, when that was not done yet, on a machine whose numbers have a decimal comma,
// and fetches the settings for numbers. Aborts the process when it does not start.
void StartLibrary();

}  // namespace larkspan::fuzz
