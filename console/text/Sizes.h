// Numbers as a person reads them.
#pragma once

#include <cstdint>
#include <string>

namespace larkspan::console {

// "4,567".
std::string GroupedText(std::uint64_t number);

// "3 views", "1 view".
std::string CountText(std::uint64_t number, const std::string& singular, const std::string& plural);

// "512 bytes", "1.2 GB"; a KB is 1024 bytes, as Windows shows it.
std::string BytesText(std::uint64_t bytes);

// "45 s", "2 min", "1 h 05 min", "2 d 03 h"; what is smaller is left out.
std::string DurationText(std::uint64_t seconds);

// "0:01:20", hours, minutes and seconds.
std::string ClockText(std::uint64_t seconds);

}  // namespace larkspan::console
