// What processes that the Notes library starts get from this one.
#pragma once

#include <cstdint>

namespace larkspan {

// From now on no process that this one starts inherits its standard handles and the stop pipe, of
// which there may be none. A supervisor does not call it: its workers need them.
void EndInheritance(std::int64_t progressPipe);

}  // namespace larkspan
