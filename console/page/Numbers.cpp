#include "console/page/Numbers.h"

#include <array>
#include <chrono>
#include <cstdio>

#include "console/account/AccountText.h"

namespace larkspan::console {

namespace {

using Seconds = std::chrono::sys_seconds;

std::optional<Seconds> ParseTime(const std::string& text) {
  int year = 0;
  unsigned month = 0, day = 0, hour = 0, minute = 0, second = 0;
  int read = 0;
  if (std::sscanf(text.c_str(), "%4d-%2u-%2uT%2u:%2u:%2uZ%n", &year, &month, &day, &hour, &minute,
                  &second, &read) != 6 ||
      static_cast<std::size_t>(read) != text.size())
    return std::nullopt;
  const std::chrono::year_month_day date{std::chrono::year(year), std::chrono::month(month),
                                         std::chrono::day(day)};
  if (!date.ok() || hour > 23 || minute > 59 || second > 60) return std::nullopt;
  return std::chrono::sys_days(date) + std::chrono::hours(hour) + std::chrono::minutes(minute) +
         std::chrono::seconds(second);
}

std::string WithUnits(std::uint64_t large, const char* largeUnit, std::uint64_t small,
                      const char* smallUnit) {
  return GroupedNumber(large) + largeUnit + std::to_string(small) + smallUnit;
}

}  // namespace

std::string CountOf(std::uint64_t number, const std::string& one, const std::string& many) {
  return GroupedNumber(number) + " " + (number == 1 ? one : many);
}

std::string SizeText(std::uint64_t bytes) {
  if (bytes < 1024) return CountOf(bytes, "byte", "bytes");
  constexpr std::array kUnits = {"KiB", "MiB", "GiB", "TiB"};
  double size = static_cast<double>(bytes) / 1024;
  std::size_t unit = 0;
  // 1023.95 would be shown as 1024.0.
  for (; size >= 1023.95 && unit + 1 < kUnits.size(); ++unit) size /= 1024;
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "%.1f %s", size, kUnits[unit]);
  return text.data();
}

std::string DurationText(std::uint64_t seconds) {
  if (seconds == 0) return "less than a second";
  if (seconds < 60) return CountOf(seconds, "second", "seconds");
  if (seconds < 3600) return WithUnits(seconds / 60, " min ", seconds % 60, " s");
  return WithUnits(seconds / 3600, " h ", seconds / 60 % 60, " min");
}

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
