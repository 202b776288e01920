#include "dxl/FlagsPattern.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string_view>

namespace larkspan {

namespace {

struct FlagsCase {
  std::string_view flags;
  std::string_view pattern;
  bool matches;
};

void PrintTo(const FlagsCase& test, std::ostream* out) {
  *out << test.flags << " against " << test.pattern;
}

class FlagsPatternTest : public testing::TestWithParam<FlagsCase> {};

TEST_P(FlagsPatternTest, MatchesAsItsGroupsSay) {
  const auto& [flags, pattern, matches] = GetParam();
  EXPECT_EQ(MatchesFlagsPattern(flags, pattern), matches) << flags << " " << pattern;
}

INSTANTIATE_TEST_SUITE_P(
    Views, FlagsPatternTest,
    testing::Values(FlagsCase{"", kViewPattern, true}, FlagsCase{"Y", kViewPattern, true},
                    FlagsCase{"PY", kViewPattern, true}, FlagsCase{"f", kViewPattern, true},
                    FlagsCase{"F", kViewPattern, false}, FlagsCase{"YG", kViewPattern, false},
                    FlagsCase{"4", kViewPattern, false}, FlagsCase{"0", kViewPattern, false},
                    FlagsCase{"n", kViewPattern, false}, FlagsCase{"Y^", kViewPattern, false},
                    FlagsCase{"-", kViewPattern, true}));

INSTANTIATE_TEST_SUITE_P(
    Folders, FlagsPatternTest,
    testing::Values(FlagsCase{"F", kFolderPattern, true}, FlagsCase{"YF", kFolderPattern, true},
                    FlagsCase{"FG^", kFolderPattern, true}, FlagsCase{"", kFolderPattern, false},
                    FlagsCase{"f", kFolderPattern, false}, FlagsCase{"F0", kFolderPattern, false},
                    FlagsCase{"4F", kFolderPattern, false},
                    FlagsCase{"Fn", kFolderPattern, false}));

INSTANTIATE_TEST_SUITE_P(
    Groups, FlagsPatternTest,
    testing::Values(
        FlagsCase{"", "", true}, FlagsCase{"A", "B", true}, FlagsCase{"", "(", true},
        FlagsCase{"AB", "*AB", true}, FlagsCase{"A", "*AB", false}, FlagsCase{"BA", "*AB", true},
        FlagsCase{"B", "+AB", true}, FlagsCase{"", "+AB", false}, FlagsCase{"C", "+AB", false},
        FlagsCase{"C", "-AB", true}, FlagsCase{"B", "-AB", false},
        // What a letter decides, no later one of its group takes back.
        FlagsCase{"B", "*AB", false}, FlagsCase{"A", "+AB", true}, FlagsCase{"A", "-AB", false},
        // An empty "+" group fits only when "-" follows at once.
        FlagsCase{"", "+", false}, FlagsCase{"", "+*", false}, FlagsCase{"", "+-", true},
        FlagsCase{"A", "+", false},
        // A letter behind "+-" belongs to the "-" group.
        FlagsCase{"A", "+-A", false}, FlagsCase{"B", "+-A", true},
        // A group that opens again begins anew.
        FlagsCase{"B", "*A*B", true}, FlagsCase{"A", "-A-B", true}, FlagsCase{"A", "+A+B", false}));

}  // namespace

}  // namespace larkspan
