#include "dxl/FlagsPattern.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string_view>

namespace larkspan {

namespace {

struct Case {
  std::string_view flags;
  std::string_view pattern;
  bool matches;
};

void PrintTo(const Case& test, std::ostream* out) {
  *out << test.flags << " against " << test.pattern;
}

class FlagsPatternTest : public testing::TestWithParam<Case> {};

TEST_P(FlagsPatternTest, MatchesAsItsGroupsSay) {
  const auto& [flags, pattern, matches] = GetParam();
  EXPECT_EQ(MatchesFlagsPattern(flags, pattern), matches) << flags << " " << pattern;
}

INSTANTIATE_TEST_SUITE_P(
    Views, FlagsPatternTest,
    testing::Values(Case{"", kViewPattern, true}, Case{"Y", kViewPattern, true},
                    Case{"PY", kViewPattern, true}, Case{"f", kViewPattern, true},
                    Case{"F", kViewPattern, false}, Case{"YG", kViewPattern, false},
                    Case{"4", kViewPattern, false}, Case{"0", kViewPattern, false},
                    Case{"n", kViewPattern, false}, Case{"Y^", kViewPattern, false},
                    Case{"-", kViewPattern, true}));

INSTANTIATE_TEST_SUITE_P(
    Folders, FlagsPatternTest,
    testing::Values(Case{"F", kFolderPattern, true}, Case{"YF", kFolderPattern, true},
                    Case{"FG^", kFolderPattern, true}, Case{"", kFolderPattern, false},
                    Case{"f", kFolderPattern, false}, Case{"F0", kFolderPattern, false},
                    Case{"4F", kFolderPattern, false}, Case{"Fn", kFolderPattern, false}));

INSTANTIATE_TEST_SUITE_P(
    Groups, FlagsPatternTest,
    testing::Values(Case{"", "", true}, Case{"A", "B", true}, Case{"", "(", true},
                    Case{"AB", "*AB", true}, Case{"A", "*AB", false}, Case{"BA", "*AB", true},
                    Case{"B", "+AB", true}, Case{"", "+AB", false}, Case{"C", "+AB", false},
                    Case{"C", "-AB", true}, Case{"B", "-AB", false},
                    // What a letter decides, no later one of its group takes back.
                    Case{"B", "*AB", false}, Case{"A", "+AB", true}, Case{"A", "-AB", false},
                    // An empty "+" group fits only when "-" follows at once.
                    Case{"", "+", false}, Case{"", "+*", false}, Case{"", "+-", true},
                    Case{"A", "+", false},
                    // A letter behind "+-" belongs to the "-" group.
                    Case{"A", "+-A", false}, Case{"B", "+-A", true},
                    // A group that opens again begins anew.
                    Case{"B", "*A*B", true}, Case{"A", "-A-B", true}, Case{"A", "+A+B", false}));

}  // namespace

}  // namespace larkspan
