// A fuzz target reads bytes of no known origin as the product would, and checks what comes of them.
// Each program has one target; what calls it, again and again, is the fuzzer or the random driver.
#pragma once

#include <cstddef>
#include <cstdint>

// Checks one input. Always returns 0; a check that fails ends the process.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace larkspan::fuzz {

// Aborts the process, with the message, unless what must hold does.
void Require(bool holds, const char* message);

}  // namespace larkspan::fuzz
