// The lines of a text, without their ends.
#pragma once

#include <string>
#include <vector>

namespace larkspan {

using Lines = std::vector<std::string>;

}  // namespace larkspan
