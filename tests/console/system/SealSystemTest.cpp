// The command seal of the real program, on exports of the real one.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "base/Utf8.h"
#include "console/bag/Bag.h"
#include "tests/support/ExportRun.h"

namespace larkspan::testing {
namespace {

class SealSystemTest : public ::testing::Test {
 protected:
  static ProgramResult Console(const std::vector<std::wstring>& words) {
    std::vector<std::wstring> arguments = {ProgramFolder() + L"\\larkspan-console.exe"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    return Program(arguments.front(), BuildCommandLine(arguments)).WaitForEnd();
  }

  ProgramResult Seal(std::vector<std::wstring> options = {}) const {
    options.insert(options.begin(), {L"seal", run_.output()});
    return Console(options);
  }

  ExportRun run_;
};

TEST_F(SealSystemTest, SaysInWordsThatTheFolderIsABag) {
  run_.Export(L"sample.nsf", {L"-archive"});
  const ProgramResult first = Seal();
  EXPECT_EQ(first.exitCode, 0u);
  EXPECT_TRUE(first.standardOutput.starts_with("The folder is a bag now: "))
      << first.standardOutput;
  const ProgramResult second = Seal();
  EXPECT_EQ(second.exitCode, 0u);
  EXPECT_TRUE(second.standardOutput.starts_with("The folder is a bag already, and valid: "))
      << second.standardOutput;
}

TEST_F(SealSystemTest, SaysItToMachinesInOneLine) {
  run_.Export(L"crash-middle.nsf", {L"-archive"});
  const ProgramResult result = Seal({L"--json"});
  EXPECT_EQ(result.exitCode, 3u);
  EXPECT_EQ(result.standardOutput.find('\n'), result.standardOutput.size() - 1);
  const nlohmann::json told = nlohmann::json::parse(result.standardOutput);
  EXPECT_EQ(told.at("folder"), WideToUtf8(run_.output()));
  EXPECT_EQ(told.at("sealed"), true);
  EXPECT_EQ(told.at("wasSealed"), false);
  EXPECT_EQ(told.at("exitCode"), 3);
  EXPECT_EQ(told.at("account").at("losses").at(0).at("id"), "0000090A");
  const nlohmann::json again = nlohmann::json::parse(Seal({L"--json"}).standardOutput);
  EXPECT_EQ(again.at("wasSealed"), true);
  EXPECT_EQ(again.at("bag").at("valid"), true);
}

TEST_F(SealSystemTest, QuietSaysNothing) {
  run_.Export(L"empty.nsf", {L"-archive"});
  const ProgramResult result = Seal({L"--quiet"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_EQ(result.standardOutput, "");
}

TEST_F(SealSystemTest, TheDesignAloneBecomesABagToo) {
  run_.Export(L"sample.nsf", {});
  EXPECT_EQ(Seal().exitCode, 0u);
  EXPECT_TRUE(console::IsBag(run_.output()));
}

TEST_F(SealSystemTest, WhatIsNoExportIsLeft) {
  const nlohmann::json told = nlohmann::json::parse(Seal({L"--json"}).standardOutput);
  EXPECT_EQ(told.at("sealed"), false);
  EXPECT_EQ(told.at("exitCode"), 2);
  EXPECT_NE(told.at("reason"), "");
  EXPECT_TRUE(run_.Tree().empty());
}

TEST_F(SealSystemTest, ACommandLineThatIsNotUnderstoodIsRefused) {
  EXPECT_EQ(Console({L"seal"}).exitCode, 1u);
  EXPECT_EQ(Seal({L"--jsno"}).exitCode, 1u);
  EXPECT_EQ(Console({L"seal", L"=x"}).exitCode, 1u);
}

TEST_F(SealSystemTest, HelpShowsAnExample) {
  const ProgramResult result = Console({L"seal", L"--help"});
  EXPECT_EQ(result.exitCode, 0u);
  EXPECT_NE(result.standardOutput.find("larkspan-console seal D:\\export\\ada"), std::string::npos);
}

}  // namespace
}  // namespace larkspan::testing
