// What a worker or a listing does last, however it ends.
#pragma once

#include <functional>

namespace larkspan {

enum class BodyEnd {
  kReturn,
  kException,  // It left the body, or nobody handled it and another compiler's code has thrown it.
  kCrash,      // Another fault that nobody handles, or the end of the body's thread.
};

struct TerminationHandler {
  void (*closing)(BodyEnd end);
  unsigned int endedThreadCode;  // The exit code when the body's thread ends within the body.
};

// Runs the body, then the closing, also when an exception leaves the body. When the body ends by a
// crash (an access violation or another fault that nobody handles, also on another thread), or by
// an exception that another compiler's code throws and no handler of this program ever sees, the
// closing runs once and the process ends at once, with the fault's code and without a dialog. Other
// threads that crash meanwhile wait for that end. The body's thread goes on no further, so that the
// closing finds the library as the crash left it; a fault or a hang in the closing, also at a lock
// that the stopped thread holds, does not keep the process alive. The same happens when the calling
// thread ends within the body, with the exit code for that. A call of abort() ends the process at
// once without the closing. Call it once, on the main thread.
void RunWithTerminationHandler(const std::function<void()>& body,
                               const TerminationHandler& handler);

}  // namespace larkspan
