#include "console/text/Sizes.h"

#include <array>
#include <cstdio>

namespace larkspan::console {

namespace {

std::string TwoDigits(std::uint64_t number) {
  return (number < 10 ? "0" : "") + std::to_string(number);
}

}  // namespace

std::string GroupedText(std::uint64_t number) {
  std::string text = std::to_string(number);
  for (std::size_t place = text.size(); place > 3;) text.insert(place -= 3, 1, ',');
  return text;
}

std::string CountText(std::uint64_t number, const std::string& singular,
                      const std::string& plural) {
  return GroupedText(number) + " " + (number == 1 ? singular : plural);
}

std::string BytesText(std::uint64_t bytes) {
  if (bytes < 1024) return CountText(bytes, "byte", "bytes");
  constexpr std::array<const char*, 4> kUnits = {"KB", "MB", "GB", "TB"};
  // What would be rounded to 1024.0 of a unit is 1.0 of the next one.
  constexpr double kRoundsUp = 1023.95;
  double amount = static_cast<double>(bytes) / 1024;
  std::size_t unit = 0;
  for (; amount >= kRoundsUp && unit + 1 < kUnits.size(); ++unit) amount /= 1024;
  std::array<char, 40> text;
  std::snprintf(text.data(), text.size(), "%.1f %s", amount, kUnits[unit]);
  return text.data();
}

std::string DurationText(std::uint64_t seconds) {
  constexpr std::uint64_t kMinute = 60;
  constexpr std::uint64_t kHour = 60 * kMinute;
  constexpr std::uint64_t kDay = 24 * kHour;
  if (seconds < kMinute) return std::to_string(seconds) + " s";
  if (seconds < kHour) return std::to_string(seconds / kMinute) + " min";
  if (seconds < kDay)
    return std::to_string(seconds / kHour) + " h " + TwoDigits(seconds % kHour / kMinute) + " min";
  return GroupedText(seconds / kDay) + " d " + TwoDigits(seconds % kDay / kHour) + " h";
}

std::string ClockText(std::uint64_t seconds) {
  return std::to_string(seconds / 3600) + ":" + TwoDigits(seconds / 60 % 60) + ":" +
         TwoDigits(seconds % 60);
}

}  // namespace larkspan::console
