// What a worker does last, however it ends.
#pragma once

#include <functional>

namespace larkspan {

// Runs the body, then the closing, also when an exception leaves the body. When the body ends by a
// crash (an access violation or another fault that nobody handles, also on another thread), the
// closing runs once and the process ends at once, with the fault's code and without a dialog. The
// body's thread goes on no further, so that the closing finds the library as the crash left it; a
// fault or a hang in the closing, also at a lock that the stopped thread holds, does not keep the
// process alive. The same happens when the calling thread ends within the body, with exit code 3. A
// call of abort() ends the process at once without the closing. Call it once, on the main thread.
void RunWithTerminationHandler(const std::function<void()>& body, void (*closing)());

}  // namespace larkspan
