#include "app/PasswordVariable.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan {
namespace {

class PasswordVariableTest : public testing::Test {
 protected:
  static std::wstring PasswordFor(const std::vector<std::wstring>& arguments) {
    std::vector<std::wstring> all = {L"larkspan.exe"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    ParsedCommandLine line = ParseCommandLine(all);
    TakePasswordVariable(line);
    return line.settings.idPassword;
  }

  const ScopedEnvironmentVariable variable_{L"LARKSPAN_PASSWORD", L"p\u00E2 \u65E5"};
};

TEST_F(PasswordVariableTest, IsTakenForAnIdFileWithoutPassword) {
  EXPECT_EQ(PasswordFor({L"-id", L"a.id"}), L"p\u00E2 \u65E5");
}

TEST_F(PasswordVariableTest, PasswordOfTheCommandLineWins) {
  EXPECT_EQ(PasswordFor({L"-id", L"a.id", L"-password", L"given"}), L"given");
}

TEST_F(PasswordVariableTest, EmptyPasswordOfTheCommandLineWinsToo) {
  EXPECT_EQ(PasswordFor({L"-password", L"", L"-id", L"a.id"}), L"");
}

TEST_F(PasswordVariableTest, IsNotTakenWithoutAnIdFile) { EXPECT_EQ(PasswordFor({}), L""); }

TEST_F(PasswordVariableTest, IsTakenOutOfTheEnvironment) {
  RemovePasswordVariable();
  EXPECT_EQ(GetEnvironmentVariableW(L"LARKSPAN_PASSWORD", nullptr, 0), 0u);
  EXPECT_EQ(PasswordFor({L"-id", L"a.id"}), L"");
}

TEST_F(PasswordVariableTest, LongPasswordIsWhole) {
  const std::wstring longest(5000, L'x');
  const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", longest);
  EXPECT_EQ(PasswordFor({L"-id", L"a.id"}), longest);
}

}  // namespace
}  // namespace larkspan
