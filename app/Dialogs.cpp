// A run is unattended: nobody would close a window, and the process behind it would wait for ever.
#include "app/Dialogs.h"

#include <windows.h>

#include <csignal>
#include <cstdlib>

namespace larkspan {

namespace {

extern "C" void EndAfterAbort(int) {
  constexpr UINT kAbortExitCode = 3;
  TerminateProcess(GetCurrentProcess(), kAbortExitCode);
}

}  // namespace

// The C runtime has a window of its own for a windowless program that aborts, and one for messages.
void SuppressDialogs() {
  SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
  _set_error_mode(_OUT_TO_STDERR);
  std::signal(SIGABRT, EndAfterAbort);
}

}  // namespace larkspan
