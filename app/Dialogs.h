// Windows that the system and the C runtime show where somebody is expected to close them.
#pragma once

namespace larkspan {

// From now on neither a fault nor a missing disk nor an abort of this process opens a window; an
// abort ends the process at once, with exit code 3. Processes that it starts begin with the same
// error mode. Windows that the program shows itself are shown.
void SuppressDialogs();

}  // namespace larkspan
