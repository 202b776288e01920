#include "console/follow/Password.h"

#include <gtest/gtest.h>
#include <windows.h>

#include "base/Utf8.h"
#include "tests/support/FileBytes.h"
#include "tests/support/ScopedEnvironmentVariable.h"
#include "tests/support/TempFolder.h"

namespace larkspan::console {
namespace {

constexpr wchar_t kPasswordName[] = L"LARKSPAN_PASSWORD";

class PasswordTest : public ::testing::Test {
 protected:
  std::wstring Take(const PasswordSources& sources) {
    return TakePassword(
        sources,
        [this] {
          ++inputLines_;
          return input_;
        },
        whyNot_);
  }

  PasswordSources FromFile(const std::string& bytes) const {
    const std::wstring path = folder_ / L"\\my password.txt";
    WriteBytes(path, bytes);
    return {WideToUtf8(path), false};
  }

  static bool HasVariable() { return GetEnvironmentVariableW(kPasswordName, nullptr, 0) != 0; }

  TempFolder folder_;
  std::optional<std::string> input_;
  int inputLines_ = 0;
  std::string whyNot_;
};

TEST_F(PasswordTest, OfAFileItIsTheFirstLine) {
  const std::pair<const char*, const wchar_t*> rows[] = {
      {"secret", L"secret"},
      {"secret\n", L"secret"},
      {"secret\r\n", L"secret"},
      {"secret\r\nnot this\r\n", L"secret"},
      {"\xEF\xBB\xBFsecret\r\n", L"secret"},
      {" two words \r\n", L" two words "},
      {"p\xC3\xA2querette\n", L"p\u00E2querette"},
      {"=begins\n", L"=begins"},
  };
  for (const auto& [bytes, password] : rows) EXPECT_EQ(Take(FromFile(bytes)), password) << bytes;
}

TEST_F(PasswordTest, AnEmptyFileIsToldSo) {
  for (const char* bytes : {"", "\n", "\r\nsecond\r\n", "\xEF\xBB\xBF"}) {
    EXPECT_EQ(Take(FromFile(bytes)), L"");
    EXPECT_NE(whyNot_.find("my password.txt' is empty"), std::string::npos) << whyNot_;
  }
}

TEST_F(PasswordTest, AMissingFileIsToldSoAndNothingElseIsTried) {
  const ScopedEnvironmentVariable variable(kPasswordName, L"of the variable");
  input_ = "of standard input";
  EXPECT_EQ(Take({WideToUtf8(folder_ / L"\\none.txt"), true}), L"");
  EXPECT_NE(whyNot_.find("none.txt' cannot be read"), std::string::npos) << whyNot_;
  EXPECT_EQ(inputLines_, 0);
}

TEST_F(PasswordTest, TheFileComesBeforeTheVariable) {
  const ScopedEnvironmentVariable variable(kPasswordName, L"of the variable");
  PasswordSources sources = FromFile("of the file\n");
  sources.standardInput = true;
  EXPECT_EQ(Take(sources), L"of the file");
}

TEST_F(PasswordTest, TheVariableComesBeforeStandardInput) {
  const ScopedEnvironmentVariable variable(kPasswordName, L"of the variable 日本");
  input_ = "of standard input";
  EXPECT_EQ(Take({"", true}), L"of the variable 日本");
  EXPECT_EQ(inputLines_, 0);
}

TEST_F(PasswordTest, AnEmptyVariableIsNone) {
  const ScopedEnvironmentVariable variable(kPasswordName, L"");
  input_ = "of standard input";
  EXPECT_EQ(Take({"", true}), L"of standard input");
}

TEST_F(PasswordTest, OfStandardInputItIsOneLine) {
  input_ = "p\xC3\xA2querette";
  EXPECT_EQ(Take({"", true}), L"p\u00E2querette");
  EXPECT_EQ(inputLines_, 1);
}

TEST_F(PasswordTest, StandardInputThatEndsHasNone) {
  EXPECT_EQ(Take({"", true}), L"");
  EXPECT_NE(whyNot_, "");
}

TEST_F(PasswordTest, TheVariableIsGoneAfterwardsWhereverThePasswordCameFrom) {
  for (const bool fromFile : {true, false}) {
    const ScopedEnvironmentVariable variable(kPasswordName, L"x");
    EXPECT_TRUE(HasVariable());
    EXPECT_NE(Take(fromFile ? FromFile("y") : PasswordSources()), L"");
    EXPECT_FALSE(HasVariable());
  }
}

TEST_F(PasswordTest, TheVariableCanBeForgotten) {
  const ScopedEnvironmentVariable variable(kPasswordName, L"x");
  ForgetPasswordVariable();
  EXPECT_FALSE(HasVariable());
}

}  // namespace
}  // namespace larkspan::console
