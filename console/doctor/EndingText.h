// How a process ended, in words.
#pragma once

#include <cstdint>
#include <string>

namespace larkspan::console {

// "exit code 77", "C0000005, an access violation".
std::string EndingText(std::uint32_t exitCode);

// Windows gave it up before its first instruction.
bool IsLoadFailure(std::uint32_t exitCode);

}  // namespace larkspan::console
