// One export that is ended from outside and taken up again.
#pragma once

#include <string>

#include "tests/torture/kill/CleanRun.h"
#include "tests/torture/kill/Moment.h"

namespace larkspan::torture {

struct KillOutcome {
  std::string kind{};    // What became of it, for the figures.
  bool isKilled = true;  // It had not ended by itself before the moment.
  Lines remarks{};       // What else is worth counting.
  Lines findings{};      // What is not in order, each a sentence.
};

// Exports the database without ending anything. Throws when that fails.
CleanRun RunClean();

// Several threads may run exports at the same time, each in a folder of its own.
KillOutcome RunKilled(const CleanRun& clean, const Moment& moment);

}  // namespace larkspan::torture
