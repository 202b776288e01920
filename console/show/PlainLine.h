// Where a run is, as a line of a file: with the time since its start, and nothing cut.
#pragma once

#include <string>

#include "console/show/RunView.h"
#include "console/show/StatusParts.h"

namespace larkspan::console {

std::string PlainLine(const RunView& view, const Pace& pace);

}  // namespace larkspan::console
