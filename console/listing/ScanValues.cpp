#include "console/listing/ScanValues.h"

#include <array>
#include <bit>
#include <charconv>
#include <chrono>
#include <cinttypes>
#include <cmath>
#include <cstdio>

namespace larkspan::console {

namespace {

constexpr std::int64_t kHundredthsPerDay = 8'640'000;

// Times count from two days before the first one of the year 1.
constexpr std::int64_t kFirst = 2 * kHundredthsPerDay;
constexpr std::int64_t kLast = 31'553'807'039'999;

std::string CalendarText(std::int64_t hundredthsOfYearOne) {
  using std::chrono::days;
  constexpr std::chrono::sys_days kYearOne = std::chrono::year{1} / 1 / 1;
  const std::chrono::year_month_day date =
      kYearOne + days(static_cast<int>(hundredthsOfYearOne / kHundredthsPerDay));
  const auto rest = static_cast<unsigned>(hundredthsOfYearOne % kHundredthsPerDay);
  std::array<char, 40> text;
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02u:%02u:%02u.%02uZ", int{date.year()},
                unsigned{date.month()}, unsigned{date.day()}, rest / 360'000, rest / 6'000 % 60,
                rest / 100 % 60, rest % 100);
  return text.data();
}

std::string NotANumber(double bytes) {
  constexpr std::uint64_t kUsual = 0x7FF8'0000'0000'0000;
  const auto bits = std::bit_cast<std::uint64_t>(bytes);
  if (bits == kUsual) return "NaN";
  std::array<char, 32> text;
  std::snprintf(text.data(), text.size(), "NaN(%016" PRIX64 ")", bits);
  return text.data();
}

}  // namespace

std::optional<std::int64_t> WholeNumberOf(std::string_view field) {
  std::int64_t number = 0;
  const char* const end = field.data() + field.size();
  const auto [behind, error] = std::from_chars(field.data(), end, number);
  if (error != std::errc() || behind != end || std::to_string(number) != field) return std::nullopt;
  return number;
}

std::string TimeOf(std::string_view field) {
  const std::optional<std::int64_t> hundredths = WholeNumberOf(field);
  if (!hundredths || *hundredths < kFirst || *hundredths > kLast) return std::string(field);
  return CalendarText(*hundredths - kFirst);
}

std::string SizeOf(double bytes) {
  if (std::isnan(bytes)) return NotANumber(bytes);
  if (std::isinf(bytes)) return bytes < 0 ? "-Infinity" : "Infinity";
  // The smallest number of all has 324 places behind its point.
  std::array<char, 400> text;
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), bytes, std::chars_format::fixed);
  return {text.data(), end.ptr};
}

}  // namespace larkspan::console
