// The DEBUG lines of the supervisor in the run log.
#pragma once

#include <string>

#include "tests/support/Lines.h"

namespace larkspan::torture {

inline constexpr char kListCounted[] = "CountInputDocuments succeeded (";
inline constexpr char kListNotFound[] = "CountInputDocuments fopen failed";
inline constexpr char kListCutShort[] = "CountInputDocuments terminated read before EOF";

bool IsSupervisorTrace(const std::string& line);

// Whether they are those of one run: of one worker after another, each from its start to what its
// marker says, of the end, and of the count of the list.
bool AreOfOneRun(const Lines& log);

}  // namespace larkspan::torture
