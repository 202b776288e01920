// Numbers as text, and the conventions of the machine for them.
#include <cstring>
#include <limits>

#include "standin/StandinHooks.h"
#include "tests/support/standin/StandinTest.h"

namespace larkspan::standin_test {

namespace {

class Numbers : public StandinTest {
 protected:
  void StartWith(const std::string& iniLines) {
    Start(iniLines);
    OSGetIntlSettings(&settings_, sizeof settings_);
  }

  void SetSeparator(const char* separator) { std::strcpy(settings_.decimalSeparator, separator); }

  // The text fills its length and no more.
  std::string Text(double number) const {
    char out[40];
    WORD length = 0;
    EXPECT_EQ(ConvertFLOATToText(&settings_, nullptr, &number, out, sizeof out, &length), 0);
    EXPECT_EQ(std::memchr(out, 0, sizeof out), nullptr);
    return {out, length};
  }

  IntlSettings settings_ = {};
};

}  // namespace

TEST_F(Numbers, HaveACommaUntilToldOtherwise) {
  StartWith("");
  EXPECT_STREQ(settings_.decimalSeparator, ",");
  EXPECT_EQ(Text(2.5), "2,5");
  SetSeparator(".");
  EXPECT_EQ(Text(2.5), "2.5");
}

TEST_F(Numbers, HaveTheSeparatorOfTheConfiguration) {
  StartWith("StandinDecimalSeparator=⁘\n");
  EXPECT_EQ(Text(-0.5), "-0" + ToNotes(std::string_view("⁘")) + "5");
}

TEST_F(Numbers, AreAsShortAsTheyReadBack) {
  StartWith("");
  SetSeparator(".");
  struct Case {
    double number;
    const char* text;
  };
  for (const Case& known : std::vector<Case>{{0, "0"},
                                             {-0.0, "-0"},
                                             {1, "1"},
                                             {-17, "-17"},
                                             {0.1, "0.1"},
                                             {1.0 / 3, "0.3333333333333333"},
                                             {0.0001, "0.0001"},
                                             {0.00001, "1E-05"},
                                             {100000, "100000"},
                                             {999999999999999, "999999999999999"},
                                             {1e15, "1E+15"},
                                             {1e20, "1E+20"},
                                             {1.5e300, "1.5E+300"}}) {
    EXPECT_EQ(Text(known.number), known.text);
  }
}

TEST_F(Numbers, AreWrittenEvenWhenTheyAreNone) {
  StartWith("");
  EXPECT_EQ(Text(std::numeric_limits<double>::infinity()), "INF");
  EXPECT_EQ(Text(-std::numeric_limits<double>::infinity()), "-INF");
  EXPECT_EQ(Text(std::numeric_limits<double>::quiet_NaN()), "NAN");
}

TEST_F(Numbers, FitIntoFortyBytes) {
  StartWith("");
  EXPECT_EQ(Text(-std::numeric_limits<double>::max()), "-1,7976931348623157E+308");
  EXPECT_EQ(Text(-1.2345678901234567e-4), "-0,00012345678901234567");
}

TEST_F(Numbers, AreRefusedWhenTheyDoNotFit) {
  StartWith("");
  char out[4] = "xyz";
  WORD length = 9;
  const double number = 2.5;
  EXPECT_EQ(ConvertFLOATToText(&settings_, nullptr, &number, out, 2, &length), 572);
  EXPECT_STREQ(out, "xyz");
  EXPECT_EQ(length, 9);
  EXPECT_EQ(ConvertFLOATToText(&settings_, nullptr, &number, out, 3, &length), 0);
  EXPECT_STREQ(out, "2,5");
}

TEST_F(Numbers, FailAsAFaultPlanSays) {
  Start();
  StandinSetFaults(R"([{"entry": "OSGetIntlSettings", "status": 1},
                       {"entry": "ConvertFLOATToText", "status": 2}])");
  OSGetIntlSettings(&settings_, sizeof settings_);
  EXPECT_STREQ(settings_.decimalSeparator, "");
  EXPECT_EQ(ConvertFLOATToText(nullptr, nullptr, nullptr, nullptr, 0, nullptr), 2);
}

using NumbersDeathTest = Numbers;

TEST_F(NumbersDeathTest, NeedExactSettingsAndNoFormat) {
  StartWith("");
  char out[40];
  WORD length = 0;
  const double number = 1;
  EXPECT_STRICT(OSGetIntlSettings(&settings_, 139), "OSGetIntlSettings: the size");
  EXPECT_STRICT(ConvertFLOATToText(&settings_, &number, &number, out, 40, &length), "the format");
  std::memset(settings_.decimalSeparator, 'x', sizeof settings_.decimalSeparator);
  EXPECT_STRICT(ConvertFLOATToText(&settings_, nullptr, &number, out, 40, &length),
                "separator does not end");
}

}  // namespace larkspan::standin_test
