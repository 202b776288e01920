// The process ends without running any of its own code: what it would run on may be damaged.
#include "base/BoundsCheck.h"

#include <windows.h>

#include <cstdlib>

namespace larkspan {

void EndForBoundsViolation() {
  constexpr UINT kBoundsViolation = 0xC0000409;
  TerminateProcess(GetCurrentProcess(), kBoundsViolation);
  std::abort();
}

}  // namespace larkspan
