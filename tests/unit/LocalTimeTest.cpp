#include "base/LocalTime.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <array>
#include <ctime>
#include <cwchar>
#include <string>

#include "tests/support/ReplacedEntryPoint.h"
#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan {
namespace {

// What the C runtime exports for a time of 64 bits.
constexpr char kLocalTimeFunction[] = "_localtime64";

constexpr std::time_t kSomeTime = 1000000000;

// The narrow runtime function, as the words of another mouth.
std::wstring NarrowlyFormatted(const char* format, std::time_t time) {
  std::array<char, 200> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), format, std::localtime(&time));
  return std::wstring(text.data(), text.data() + length);
}

TEST(LocalTimeTest, DateAndTimeAreInTheLocalForm) {
  const std::wstring time = NarrowlyFormatted("%c ", kSomeTime);
  EXPECT_EQ(FormatLocalTime(kSomeTime).substr(0, time.size()), time);
}

TEST(LocalTimeTest, ZoneThatTheEnvironmentNamesIsTheRuntimes) {
  const ScopedEnvironmentVariable zone(L"TZ", L"XYZ");
  const std::wstring narrow = NarrowlyFormatted("%c %Z", kSomeTime);
  EXPECT_EQ(FormatLocalTime(kSomeTime), narrow);
}

DWORD WINAPI TellZone(TIME_ZONE_INFORMATION* zone) {
  *zone = {};
  std::wcscpy(zone->StandardName, L"Mitteleurop\u00E4ische Zeit \u65E5");
  std::wcscpy(zone->DaylightName, L"Mitteleurop\u00E4ische Sommerzeit");
  return TIME_ZONE_ID_STANDARD;
}

TEST(LocalTimeTest, ZoneNameKeepsLettersOutsideAscii) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetTimeZoneInformation", TellZone);
  EXPECT_TRUE(FormatLocalTime(kSomeTime).ends_with(L" Mitteleurop\u00E4ische Zeit \u65E5"));
}

std::tm summer{};

std::tm* GiveSummer(const std::time_t*) {
  summer.tm_isdst = 1;
  summer.tm_mday = 1;
  return &summer;
}

TEST(LocalTimeTest, SummerHasItsOwnName) {
  const ReplacedEntryPoint zone("KERNEL32.dll", "GetTimeZoneInformation", TellZone);
  const ReplacedEntryPoint time("msvcrt.dll", kLocalTimeFunction, GiveSummer);
  EXPECT_TRUE(FormatLocalTime(kSomeTime).ends_with(L" Mitteleurop\u00E4ische Sommerzeit"));
}

DWORD WINAPI TellNoZone(TIME_ZONE_INFORMATION*) { return TIME_ZONE_ID_INVALID; }

TEST(LocalTimeTest, ZoneThatTheSystemDoesNotTellIsTheRuntimes) {
  const ReplacedEntryPoint replaced("KERNEL32.dll", "GetTimeZoneInformation", TellNoZone);
  EXPECT_EQ(FormatLocalTime(kSomeTime), NarrowlyFormatted("%c %Z", kSomeTime));
}

TEST(LocalTimeTest, TextIsNotEmpty) { EXPECT_GT(FormatLocalTime(kSomeTime).size(), 1u); }

TEST(LocalTimeTest, LaterSecondGivesAnotherText) {
  EXPECT_NE(FormatLocalTime(kSomeTime), FormatLocalTime(kSomeTime + 1));
}

TEST(LocalTimeTest, TextIsAtMost100Characters) {
  EXPECT_LE(FormatLocalTime(kSomeTime).size(), 100u);
}

TEST(LocalTimeTest, TimeWithoutLocalFormIsEmpty) {
  constexpr std::time_t kBeforeAnyLocalTime = -1000000;
  EXPECT_EQ(FormatLocalTime(kBeforeAnyLocalTime), L"");
}

}  // namespace
}  // namespace larkspan
