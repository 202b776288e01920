#include "base/LocalTime.h"

#include <gtest/gtest.h>

#include <array>
#include <ctime>
#include <string>

namespace larkspan {
namespace {

constexpr std::time_t kSomeTime = 1000000000;

// The narrow runtime function, as the words of another mouth.
std::wstring NarrowlyFormatted(std::time_t time) {
  std::array<char, 200> text{};
  const std::size_t length =
      std::strftime(text.data(), text.size(), "%c %Z", std::localtime(&time));
  return std::wstring(text.data(), text.data() + length);
}

TEST(LocalTimeTest, TimeIsInTheLocalForm) {
  EXPECT_EQ(FormatLocalTime(kSomeTime), NarrowlyFormatted(kSomeTime));
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
