// The C runtime formats the date and the time. The name of the zone it would take through its own
// 8-bit character set, in which letters outside ASCII come out wrong, so that is the system's own;
// but where the environment names the zone, the name is the C runtime's.
#include "base/LocalTime.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <cwchar>

namespace larkspan {

namespace {

constexpr std::size_t kMaxLength = 100;

std::wstring Format(const wchar_t* format, const std::tm& time) {
  std::array<wchar_t, kMaxLength + 1> text{};
  return std::wstring(text.data(), std::wcsftime(text.data(), text.size(), format, &time));
}

std::wstring ZoneName(const std::tm& time) {
  if (GetEnvironmentVariableW(L"TZ", nullptr, 0) != 0) return Format(L"%Z", time);
  TIME_ZONE_INFORMATION zone{};
  if (GetTimeZoneInformation(&zone) == TIME_ZONE_ID_INVALID) return Format(L"%Z", time);
  return time.tm_isdst > 0 ? zone.DaylightName : zone.StandardName;
}

}  // namespace

std::wstring FormatLocalTime(std::time_t time) {
  const std::tm* local = std::localtime(&time);
  if (local == nullptr) return {};
  std::wstring text = Format(L"%c ", *local) + ZoneName(*local);
  text.resize(std::min(text.size(), kMaxLength));
  return text;
}

}  // namespace larkspan
