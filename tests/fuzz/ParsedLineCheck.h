// What a command line has to give, told by the words of the options.
#pragma once

#include <string>
#include <vector>

#include "app/CommandLine.h"

namespace larkspan::fuzz {

// The line was parsed from these arguments, the first of which is the program.
void CheckParsedLine(const ParsedCommandLine& line, const std::vector<std::wstring>& arguments);

}  // namespace larkspan::fuzz
