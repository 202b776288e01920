// Progress lines on standard output, and the pipe whose closing stops the run. Both serve the
// program that started an archive run.
#pragma once

#include <cstdint>
#include <functional>

namespace larkspan {

// Writes "PROGRESS: ", the formatted message ("%s" stands for wide text; cut at 1023 characters)
// and a line end to standard output, and flushes it. Returns true, and writes nothing, once the
// run has been asked to stop. Does nothing and returns false outside archive mode. Main thread.
bool Progress(const wchar_t* format, ...);

// Starts the thread that runs MonitorPipe. It is never joined: it ends with the process. Main
// thread.
void StartPipeMonitor();

// Reads the pipe with a call that blocks.
using PipeRead = std::function<void(std::int64_t pipe)>;

// Blocks in a read of the settings' pipe, and asks the run to stop when the read returns, for
// whatever reason. Ends at once when the settings hold no pipe. A read that ends abnormally, by an
// exception, is logged instead and stops nothing.
void MonitorPipe(const PipeRead& read);

// Takes back a stop request, for tests that share one process.
void ClearStopRequestForTesting();

}  // namespace larkspan
