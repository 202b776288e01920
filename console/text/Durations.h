// Lengths of time as a person gives them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace larkspan::console {

// "90s", "10m", "2h", in milliseconds; a number alone is seconds. No value for what is less than a
// second, or no time.
std::optional<std::uint64_t> ParseMilliseconds(const std::string& text);

}  // namespace larkspan::console
