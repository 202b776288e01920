#include "console/text/Csv.h"

#include <gtest/gtest.h>

#include <random>

namespace larkspan::console {
namespace {

using Rows = std::vector<CsvRow>;

TEST(CsvTest, FieldsStandBetweenCommas) { EXPECT_EQ(CsvLine({"a", "", "c d"}), "a,,c d\r\n"); }

TEST(CsvTest, WhatWouldEndAFieldStandsInQuotes) {
  EXPECT_EQ(CsvLine({"a,b", "say \"so\"", "two\r\nlines", "tab\there"}),
            "\"a,b\",\"say \"\"so\"\"\",\"two\r\nlines\",\"tab\there\"\r\n");
}

TEST(CsvTest, RowsAreReadWithAnyLineEnd) {
  EXPECT_EQ(ParseCsv("a,b\r\nc,d\ne,f"), (Rows{{"a", "b"}, {"c", "d"}, {"e", "f"}}));
}

TEST(CsvTest, AnEmptyLineIsNoRowAndAnEmptyFieldIsOne) {
  EXPECT_EQ(ParseCsv("\r\na,\r\n\n,b\r\n"), (Rows{{"a", ""}, {"", "b"}}));
  EXPECT_EQ(ParseCsv(""), Rows{});
}

TEST(CsvTest, QuotedFieldsAreReadWhole) {
  EXPECT_EQ(ParseCsv("\"a,\"\"b\"\"\r\nc\",d\r\n"), (Rows{{"a,\"b\"\r\nc", "d"}}));
}

TEST(CsvTest, ACarriageReturnAloneBelongsToItsField) {
  EXPECT_EQ(ParseCsv("a\rb,c\r"), (Rows{{"a\rb", "c\r"}}));
}

TEST(CsvTest, AQuoteThatDoesNotFitIsAFault) {
  EXPECT_FALSE(ParseCsv("\"a"));
  EXPECT_FALSE(ParseCsv("\"a\"b,c"));
}

TEST(CsvTest, WhatWasWrittenIsReadAgain) {
  std::mt19937 random(7);
  constexpr char kLetters[] = "a,\"\r\n\t =";
  for (int round = 0; round < 2'000; ++round) {
    CsvRow row(2 + random() % 4);
    for (std::string& field : row)
      for (auto left = random() % 6; left > 0; --left) field += kLetters[random() % 8];
    EXPECT_EQ(ParseCsv(CsvLine(row) + CsvLine(row)), (Rows{row, row}));
  }
}

}  // namespace
}  // namespace larkspan::console
