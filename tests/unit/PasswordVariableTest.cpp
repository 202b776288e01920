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
  static std::wstring PasswordFor(const std::vector<std::wstring>& arguments,
                                  Role role = Role::kWorker) {
    std::vector<std::wstring> all = {L"larkspan.exe"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    ParsedCommandLine line = ParseCommandLine(all);
    SettlePassword(role, line);
    return line.settings.idPassword;
  }

  static bool IsInTheEnvironment() {
    return GetEnvironmentVariableW(L"LARKSPAN_PASSWORD", nullptr, 0) != 0;
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
  for (const Role role : {Role::kWorker, Role::kScan, Role::kServers}) {
    const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", L"x");
    EXPECT_EQ(PasswordFor({L"-id", L"a.id"}, role), L"x");
    EXPECT_FALSE(IsInTheEnvironment());
  }
}

TEST_F(PasswordVariableTest, IsTakenOutOfTheEnvironmentAlsoWhereTheCommandLineWins) {
  PasswordFor({L"-id", L"a.id", L"-password", L"given"});
  EXPECT_FALSE(IsInTheEnvironment());
}

TEST_F(PasswordVariableTest, SupervisorLeavesItToItsWorkersAndKeepsNone) {
  EXPECT_EQ(PasswordFor({L"-id", L"a.id"}, Role::kSupervisor), L"");
  EXPECT_EQ(PasswordFor({L"-id", L"a.id", L"-password", L"given"}, Role::kSupervisor), L"");
  EXPECT_TRUE(IsInTheEnvironment());
}

TEST_F(PasswordVariableTest, LongPasswordIsWhole) {
  const std::wstring longest(5000, L'x');
  const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", longest);
  EXPECT_EQ(PasswordFor({L"-id", L"a.id"}), longest);
}

}  // namespace
}  // namespace larkspan
