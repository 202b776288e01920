// The arguments of a command line.
#pragma once

#include <string>
#include <vector>

namespace larkspan {

// Splits a command line into its arguments by the system's own rules; the first is the program.
std::vector<std::wstring> SplitCommandLine(const std::wstring& commandLine);

}  // namespace larkspan
