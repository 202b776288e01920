// Numbers as a person reads them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace larkspan::console {

// "1 note", "12,345 notes".
std::string CountOf(std::uint64_t number, const std::string& one, const std::string& many);

// "512 bytes", "6.0 MiB".
std::string SizeText(std::uint64_t bytes);

// "less than a second", "45 seconds", "12 min 5 s", "8 h 3 min".
std::string DurationText(std::uint64_t seconds);

// The seconds between two times of the form "2026-11-22T07:40:55Z". None when one of them is of
// another form, or the later one is the first.
std::optional<std::uint64_t> SecondsBetween(const std::string& from, const std::string& to);

// "2026-11-22 07:40:55 UTC" for a time of that form; any other text as it is.
std::string TimeText(const std::string& time);

}  // namespace larkspan::console
