#include "app/PasswordVariable.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "tests/support/ScopedEnvironmentVariable.h"

namespace larkspan {
namespace {

class PasswordVariableTest : public testing::Test {
 protected:
  static std::wstring PasswordFor(const std::wstring& idFile, const std::wstring& password) {
    Settings settings;
    settings.idFile = idFile;
    settings.idPassword = password;
    TakePasswordVariable(settings);
    return settings.idPassword;
  }

  const ScopedEnvironmentVariable variable_{L"LARKSPAN_PASSWORD", L"p\u00E2 \u65E5"};
};

TEST_F(PasswordVariableTest, IsTakenForAnIdFileWithoutPassword) {
  EXPECT_EQ(PasswordFor(L"a.id", L""), L"p\u00E2 \u65E5");
}

TEST_F(PasswordVariableTest, PasswordOfTheCommandLineWins) {
  EXPECT_EQ(PasswordFor(L"a.id", L"given"), L"given");
}

TEST_F(PasswordVariableTest, IsNotTakenWithoutAnIdFile) { EXPECT_EQ(PasswordFor(L"", L""), L""); }

TEST_F(PasswordVariableTest, IsTakenOutOfTheEnvironment) {
  RemovePasswordVariable();
  EXPECT_EQ(GetEnvironmentVariableW(L"LARKSPAN_PASSWORD", nullptr, 0), 0u);
  EXPECT_EQ(PasswordFor(L"a.id", L""), L"");
}

TEST_F(PasswordVariableTest, LongPasswordIsWhole) {
  const std::wstring longest(5000, L'x');
  const ScopedEnvironmentVariable variable(L"LARKSPAN_PASSWORD", longest);
  EXPECT_EQ(PasswordFor(L"a.id", L""), longest);
}

}  // namespace
}  // namespace larkspan
