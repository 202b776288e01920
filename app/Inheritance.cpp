// A process of the library that outlives this one would hold its standard output open, and the
// calling program would wait for the end of the run's progress for as long.
#include "app/Inheritance.h"

#include <windows.h>

#include "base/Settings.h"

namespace larkspan {

namespace {

// A handle that is none, or one of a console that cannot be changed, is left as it is.
void EndInheritanceOf(HANDLE handle) {
  if (handle == nullptr || handle == INVALID_HANDLE_VALUE) return;
  SetHandleInformation(handle, HANDLE_FLAG_INHERIT, 0);
}

}  // namespace

void EndInheritance(std::int64_t progressPipe) {
  for (const DWORD standard : {STD_INPUT_HANDLE, STD_OUTPUT_HANDLE, STD_ERROR_HANDLE}) {
    EndInheritanceOf(GetStdHandle(standard));
  }
  if (progressPipe == kNoPipe) return;
  EndInheritanceOf(reinterpret_cast<HANDLE>(static_cast<std::intptr_t>(progressPipe)));
}

}  // namespace larkspan
