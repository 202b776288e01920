#include "tests/fuzz/Target.h"

#include <cstdio>
#include <cstdlib>

namespace larkspan::fuzz {

void Require(bool holds, const char* message) {
  if (holds) return;
  std::fprintf(stderr, "does not hold: %s\n", message);
  std::abort();
}

}  // namespace larkspan::fuzz
