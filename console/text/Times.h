// Times as the record of an export has them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace larkspan::console {

// The seconds between two times of the form "2026-11-22T07:40:55Z". None when one of them is of
// another form, or the later one is the first.
std::optional<std::uint64_t> SecondsBetween(const std::string& from, const std::string& to);

// "2026-11-22 07:40:55 UTC" for a time of that form; any other text as it is.
std::string TimeText(const std::string& time);

}  // namespace larkspan::console
