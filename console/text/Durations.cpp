#include "console/text/Durations.h"

#include <charconv>
#include <cmath>
#include <string_view>
#include <system_error>

namespace larkspan::console {

std::optional<std::uint64_t> ParseMilliseconds(const std::string& text) {
  double number = 0;
  const char* const end = text.data() + text.size();
  const auto [unit, error] = std::from_chars(text.data(), end, number);
  const std::string_view word(unit, static_cast<std::size_t>(end - unit));
  if (error != std::errc() || !std::isfinite(number) || number > 1e6) return std::nullopt;
  const double seconds = word == "h"                   ? 3600
                         : word == "m"                 ? 60
                         : word == "s" || word.empty() ? 1
                                                       : 0;
  if (number * seconds < 1) return std::nullopt;
  return static_cast<std::uint64_t>(number * seconds * 1000);
}

}  // namespace larkspan::console
