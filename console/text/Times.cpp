#include "console/text/Times.h"

#include <chrono>
#include <cstdio>

namespace larkspan::console {

namespace {

using Seconds = std::chrono::sys_seconds;

std::optional<Seconds> ParseTime(const std::string& text) {
  int year = 0;
  unsigned month = 0;
  unsigned day = 0;
  unsigned hour = 0;
  unsigned minute = 0;
  unsigned second = 0;
  int read = 0;
  if (std::sscanf(text.c_str(), "%4d-%2u-%2uT%2u:%2u:%2uZ%n", &year, &month, &day, &hour, &minute,
                  &second, &read) != 6 ||
      static_cast<std::size_t>(read) != text.size())
    return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                         std::chrono::day(day)};
  if (!date.ok() || hour > 23 || minute > 59 || second > 60) return std::nullopt;
  return std::chrono::sys_days{date} + std::chrono::hours(hour) + std::chrono::minutes(minute) +
         std::chrono::seconds(second);
}

}  // namespace

std::optional<std::uint64_t> SecondsBetween(const std::string& from, const std::string& to) {
  const std::optional<Seconds> first = ParseTime(from);
  const std::optional<Seconds> last = ParseTime(to);
  if (!first || !last || *last < *first) return std::nullopt;
  return static_cast<std::uint64_t>((*last - *first).count());
}

std::string TimeText(const std::string& time) {
  if (!ParseTime(time)) return time;
  return time.substr(0, 10) + " " + time.substr(11, 8) + " UTC";
}

}  // namespace larkspan::console
