// The command line of a process that is started.
#pragma once

#include <string>
#include <vector>

namespace larkspan {

// A command line whose arguments, the first being the program, parse back to these texts.
std::wstring BuildCommandLine(const std::vector<std::wstring>& arguments);

}  // namespace larkspan
