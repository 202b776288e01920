#include "console/show/TerminalColours.h"

#include <gtest/gtest.h>

#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan::console {
namespace {

constexpr std::uint32_t kEarlier = 3;
constexpr std::uint32_t kSequences = 4;

class SomeTerminal : public TerminalControl {
 public:
  std::optional<std::uint32_t> Mode() override {
    return isTerminal ? std::optional(mode) : std::nullopt;
  }
  bool SetMode(std::uint32_t wanted) override {
    if (!isSettable) return false;
    mode = wanted & keeps;
    return true;
  }
  std::optional<int> CursorColumn() override { return column; }
  bool Write(std::string_view ascii) override {
    text += ascii;
    for (const char letter : ascii) column = letter == '\r' ? 0 : column + 1;
    if (understands && ascii.starts_with("\x1B")) column -= static_cast<int>(ascii.size());
    return true;
  }

  bool isTerminal = true;
  bool isSettable = true;
  bool understands = true;
  std::uint32_t keeps = ~0u;
  std::uint32_t mode = kEarlier;
  int column = 0;
  std::string text;
};

TEST(TerminalColoursTest, ATerminalThatUnderstandsThemHasColours) {
  SomeTerminal terminal;
  {
    const TerminalColours colours(terminal);
    EXPECT_TRUE(colours.Work());
    EXPECT_EQ(terminal.mode, kEarlier | kSequences);
  }
  EXPECT_EQ(terminal.mode, kEarlier);
}

TEST(TerminalColoursTest, AModeThatWasOnStaysOn) {
  SomeTerminal terminal;
  terminal.mode |= kSequences;
  EXPECT_TRUE(TerminalColours(terminal).Work());
  EXPECT_EQ(terminal.mode, kEarlier | kSequences);
}

TEST(TerminalColoursTest, NoColorTurnsThemOff) {
  const ScopedEnvironmentVariable refusal(L"NO_COLOR", L"1");
  SomeTerminal terminal;
  EXPECT_FALSE(TerminalColours(terminal).Work());
  EXPECT_EQ(terminal.mode, kEarlier);
  EXPECT_EQ(terminal.text, "");
}

TEST(TerminalColoursTest, AnEmptyNoColorRefusesNothing) {
  const ScopedEnvironmentVariable refusal(L"NO_COLOR", L"");
  SomeTerminal terminal;
  EXPECT_TRUE(TerminalColours(terminal).Work());
}

TEST(TerminalColoursTest, ATerminalThatRefusesHasNone) {
  SomeTerminal terminal;
  terminal.isSettable = false;
  EXPECT_FALSE(TerminalColours(terminal).Work());
}

TEST(TerminalColoursTest, ATerminalThatForgetsTheModeHasNone) {
  SomeTerminal terminal;
  terminal.keeps = ~kSequences;
  EXPECT_FALSE(TerminalColours(terminal).Work());
}

TEST(TerminalColoursTest, WhatIsShownAsTextIsCoveredAgain) {
  SomeTerminal terminal;
  terminal.understands = false;
  EXPECT_FALSE(TerminalColours(terminal).Work());
  EXPECT_EQ(terminal.text, "\x1B[0m\r    \r");
  EXPECT_EQ(terminal.mode, kEarlier);
}

TEST(TerminalColoursTest, WithinALineNothingIsTried) {
  SomeTerminal terminal;
  terminal.column = 7;
  EXPECT_FALSE(TerminalColours(terminal).Work());
  EXPECT_EQ(terminal.text, "");
}

TEST(TerminalColoursTest, AFileHasNone) {
  SomeTerminal terminal;
  terminal.isTerminal = false;
  EXPECT_FALSE(TerminalColours(terminal).Work());
  EXPECT_EQ(terminal.text, "");
}

}  // namespace
}  // namespace larkspan::console
