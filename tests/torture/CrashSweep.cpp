#include "tests/torture/CrashSweep.h"
namespace larkspan::torture {
void SweepCrashes(const Options&, Report&) {}
}  // namespace larkspan::torture
