#include "console/show/TextWidth.h"

#include <gtest/gtest.h>

namespace larkspan::console {
namespace {

struct WidthCase {
  const char* text;
  int columns;
};

TEST(TextWidthTest, EachCharacterTakesItsColumns) {
  const WidthCase cases[] = {
      {"", 0},
      {"orders.nsf", 10},
      {"\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F", 4},      // Umlauts in one code point each.
      {"a\xCC\x88", 1},                             // The same with a mark behind.
      {"\xCC\x88", 0},                              // A mark that has no letter.
      {"\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E", 6},  // Han characters,
      {"\xE3\x81\x8B\xE3\x82\x99", 2},              // a kana with its mark,
      {"\xEF\xBD\xB1", 1},                          // and a half-width one.
      {"\xEF\xBC\xA1", 2},                          // A full-width letter.
      {"\xED\x95\x9C", 2},                          // Hangul.
      {"\xF0\xA0\x80\x80", 2},                      // Han beyond the first plane.
      {"\xF0\x9D\x84\x9E", 1},                      // A clef, beyond it too.
      {"\xE2\x9C\x85\xF0\x9F\x8C\xB1", 4},          // Pictures.
      {"\xD0\x96", 1},                              // Cyrillic.
      {"x\xE2\x80\x8Dy", 2},                        // A joiner between two.
      {"\xFF", 1},                                  // No UTF-8.
  };
  for (const WidthCase& one : cases) EXPECT_EQ(ColumnsOf(one.text), one.columns) << one.text;
}

struct CutCase {
  const char* text;
  int columns;
  const char* cut;
};

TEST(TextWidthTest, ALongNameIsCutInItsMiddle) {
  const CutCase cases[] = {
      {"Mill/Example!!archive/orders.nsf", 40, "Mill/Example!!archive/orders.nsf"},
      {"Mill/Example!!archive/orders.nsf", 32, "Mill/Example!!archive/orders.nsf"},
      {"Mill/Example!!archive/orders.nsf", 31, "Mill/Example!!...ive/orders.nsf"},
      {"Mill/Example!!archive/orders.nsf", 16, "Mill/E...ers.nsf"},
      {"Mill/Example!!archive/orders.nsf", 4, "...f"},
      {"Mill/Example!!archive/orders.nsf", 3, "Mil"},
      {"Mill/Example!!archive/orders.nsf", 0, ""},
      {"", 10, ""},
  };
  for (const CutCase& one : cases) EXPECT_EQ(CutInTheMiddle(one.text, one.columns), one.cut);
}

// Of a wide character no half is shown; the line is a column shorter then.
TEST(TextWidthTest, AWideCharacterIsNotCutInTwo) {
  const std::string name = "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE6\x96\x87\xE6\x9B\xB8.nsf";
  EXPECT_EQ(CutInTheMiddle(name, 14), name);
  EXPECT_EQ(CutInTheMiddle(name, 13), "\xE6\x97\xA5\xE6\x9C\xAC....nsf");
  EXPECT_EQ(CutInTheMiddle(name + "2", 14), "\xE6\x97\xA5\xE6\x9C\xAC....nsf2");
  EXPECT_EQ(CutInTheMiddle("a" + name, 14), "a\xE6\x97\xA5\xE6\x9C\xAC...\xE6\x9B\xB8.nsf");
  EXPECT_EQ(CutAtTheEnd(name, 5), "\xE6\x97\xA5\xE6\x9C\xAC");
}

TEST(TextWidthTest, AMarkStaysWithItsLetter) {
  EXPECT_EQ(CutAtTheEnd("Ma\xCC\x88rz", 2), "Ma\xCC\x88");
  EXPECT_EQ(CutInTheMiddle("abcdefghija\xCC\x88", 4), "...a\xCC\x88");
  EXPECT_EQ(CutInTheMiddle("a\xCC\x88"
                           "bcdefghij",
                           5),
            "a\xCC\x88...j");
}

TEST(TextWidthTest, NoWidthIsEverPassed) {
  const std::string name = "M\xC3\xBChle/\xE4\xBE\x8B!!archiv/a\xCC\x88uftr\xE6\x97\xA5ge.nsf";
  for (int columns = 0; columns < 40; ++columns) {
    EXPECT_LE(ColumnsOf(CutInTheMiddle(name, columns)), columns);
    EXPECT_LE(ColumnsOf(CutAtTheEnd(name, columns)), columns);
  }
}

TEST(TextWidthTest, WhatCommandsATerminalIsShownAsAMark) {
  EXPECT_EQ(SafeForTerminal("a\x1B[2Jb\r\b\x07\tc"), "a?[2Jb????c");
  EXPECT_EQ(SafeForTerminal("x\xC2\x9By"), "x?y");  // One code point that begins them.
  EXPECT_EQ(SafeForTerminal("gpj.\xE2\x80\xAE"
                            "fsn"),
            "gpj.?fsn");  // It would be read backwards.
  EXPECT_EQ(SafeForTerminal("two\nlines \xC3\xA4 \xE6\x97\xA5"),
            "two\nlines \xC3\xA4 \xE6\x97\xA5");
}

}  // namespace
}  // namespace larkspan::console
