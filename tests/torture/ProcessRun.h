// Runs of the real program in processes of its own.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "tests/torture/Listing.h"
#include "tests/torture/Outcome.h"
#include "tests/torture/Subject.h"

namespace larkspan::torture {

struct ProcessRun {
  // None when the program, or a worker of it, ran for a minute; all of it was ended then.
  std::optional<std::uint32_t> exitCode;
  Outcome outcome;
  std::string misuse;       // Of the library.
  Lines leftOpenByTheLast;  // Of the runtimes that ended: what was open in the library.
};

// With a fault plan for the library, an array in JSON. Where an earlier worker is to die, it really
// does, and the plan is for those after it; the supervisor, which gives each its plan, is then the
// product's own in this process.
ProcessRun RunProgram(const Subject& subject, const std::string& faultPlan);
ProcessRun RunProgram(const Listing& listing, const std::string& faultPlan);

}  // namespace larkspan::torture
